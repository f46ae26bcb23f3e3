#pragma once

#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/file.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_presets_group.h"

namespace orvel {

/// A configuration preset of the preset folder, and the user presets made under it.
struct ConfigEntry {
  Preset<ConfigPresetData> preset;               ///< as its file has it
  File file;                                     ///< its folder is the mode's
  bool isFactory = false;                        ///< whether it stands in "Default"
  boost::intrusive_ptr<UserPresetsGroup> group;  ///< never null
};

/// By the names of their folders, the factory's last.
using ConfigEntries = std::vector<ConfigEntry>;

}  // namespace orvel
