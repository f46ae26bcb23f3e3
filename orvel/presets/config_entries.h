#pragma once

#include "orvel/core/dir.h"
#include "orvel/core/file.h"
#include "orvel/core/guid.h"
#include "orvel/presets/config_entry.h"

namespace orvel {

/// The folder of the factory's presets.
inline constexpr char16_t kFactoryFolderName[] = u"Default";

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
