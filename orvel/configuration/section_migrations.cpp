#include "orvel/configuration/section_migrations.h"

#include <cstddef>

#include "orvel/presets/effect_preset_utils.h"
#include "orvel/sections/clarity_section.h"
#include "orvel/sections/sound_effects_section.h"

namespace orvel {

std::map<std::string, ConfigurationManager::MigrateModelFunction> GetSectionMigrations() {
  const auto byEntry = [](const std::string& tableKey, std::size_t valueIndex) {
    return [tableKey, valueIndex](const PropList& oldConfiguration,
                                  const PropList& newConfiguration, std::vector<float>& values) {
      return presetutils::MigratePresetControlBasedPreset(oldConfiguration, newConfiguration,
                                                          tableKey, valueIndex, values);
    };
  };
  // All parameters before the selector are stored, so its place in the list is its id.
  return {
      {"model_clarity",
       byEntry(SectionClarityConfig::kConfig_EQPresets, SectionModelClarityParams::kEQPreset)},
      {"model_soundeffects", byEntry(SectionSoundEffectsConfig::kConfig_ReverbPresets,
                                     SectionModelSoundEffectsParams::kReverbPreset)},
  };
}

}  // namespace orvel
