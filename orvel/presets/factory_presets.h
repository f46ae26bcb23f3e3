#pragma once

#include <vector>

#include "orvel/core/dir.h"
#include "orvel/core/module_resources.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {

/// The presets that come with the library, from the resources of its module; none, traced, when a
/// document is missing or broken.
std::vector<Preset<ConfigPresetData>> ReadFactoryConfigs(ModuleHandle module);
std::vector<Preset<UserPresetData>> ReadFactoryUserPresets(ModuleHandle module);

/// Makes the folder of the factory's presets, unless it is there. It is filled under another name,
/// beside the folder that it belongs in, and gets its own when it is whole: one that a crash cut
/// short would never be completed.
void SeedFactoryFolder(ModuleHandle module, const Dir& target);

}  // namespace orvel
