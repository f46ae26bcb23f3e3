#pragma once

#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/dir.h"
#include "orvel/core/file.h"
#include "orvel/core/guid.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_presets_group.h"

namespace orvel {

/// The folder of the factory's presets.
inline constexpr char16_t kFactoryFolderName[] = u"Default";

/// A configuration preset of the preset folder, and the user presets made under it.
struct ConfigEntry {
  Preset<ConfigPresetData> preset;               ///< as its file has it
  File file;                                     ///< its folder is the mode's
  bool isFactory = false;                        ///< whether it stands in "Default"
  boost::intrusive_ptr<UserPresetsGroup> group;  ///< never null
};

/// By the names of their folders, the factory's last.
using ConfigEntries = std::vector<ConfigEntry>;

/// Reads the preset folder `root` and corrects its records, as `PresetsCache::Reload` promises.
ConfigEntries LoadConfigEntries(const Dir& root);

/// The entry of this guid; null when there is none.
/// @{
const ConfigEntry* FindConfigEntry(const ConfigEntries& entries, const Guid& guid);
ConfigEntry* FindConfigEntry(ConfigEntries& entries, const Guid& guid);
/// @}

/// Adds a preset of a person, at the place that it has after a reload, too, with the user presets
/// that its folder holds.
void InsertConfigEntry(ConfigEntries& entries, const Preset<ConfigPresetData>& preset,
                       const File& file);

}  // namespace orvel
