#include "host/factory/templates.h"

#include <algorithm>
#include <cassert>
#include <cstdint>

#include "host/factory/equalizer_presets.h"
#include "host/factory/repair_settings.h"
#include "host/factory/reverb_presets.h"

namespace orvelhost {
namespace {

struct Template {
  const char* guid;
  const char* mode;
  float loudness;                     ///< target in LUFS
  std::vector<const char*> sections;  ///< configured beside loudness and volume
};

constexpr const char* kName = "$$$/app/Presets/DefaultPresetName=(Default)";

constexpr float kMinLoudness = -35.0f;
constexpr float kMaxLoudness = -12.0f;
constexpr std::uint32_t kLoudnessStandard = 0;
constexpr float kMinGain = -15.0f;
constexpr float kMaxGain = 6.0f;

const std::vector<Template>& Templates() {
  // clang-format off
  static const std::vector<Template> templates = {
    // guid                                     mode        LUFS    sections
    { "cea63332-1adc-44a9-a6eb-5490f965859b",  "sfx",      -21.0f, { "model_pan", "model_soundeffects" } },
    { "31ba96a6-5d3e-4d89-b1e1-1dbe3c055d0c",  "music",    -25.0f, { "model_duration" } },
    { "58dc27a8-6a2a-480c-bd0c-4b45fff346a6",  "dialog",   -23.0f, { "model_clarity", "model_restoration", "model_soundeffects" } },
    { "a8b40e3e-13e7-4c1f-b382-96058f1f691d",  "ambience", -30.0f, { "model_soundeffects", "model_stereowidth" } },
  };
  // clang-format on
  return templates;
}

orvel::PropList LoudnessConfiguration(float target) {
  using Config = orvel::SectionLoudnessConfig;
  orvel::PropList configuration;
  configuration.SetValue(Config::kConfig_DefaultLoudness, target);
  configuration.SetValue(Config::kConfig_MinLoudness, kMinLoudness);
  configuration.SetValue(Config::kConfig_MaxLoudness, kMaxLoudness);
  configuration.SetValue(Config::kConfig_LoudnessStandard, kLoudnessStandard);
  return configuration;
}

orvel::PropList VolumeConfiguration() {
  orvel::PropList configuration;
  configuration.SetValue(orvel::SectionVolumeConfig::kConfig_MinGain, kMinGain);
  configuration.SetValue(orvel::SectionVolumeConfig::kConfig_MaxGain, kMaxGain);
  return configuration;
}

/// Empty for a section that reads no configuration.
orvel::PropList SectionConfiguration(const std::string& modelID, const std::string& mode) {
  orvel::PropList configuration;
  if (modelID == "model_clarity") {
    configuration.SetValue(orvel::SectionClarityConfig::kConfig_EQPresets, EqualizerPresetTree());
  } else if (modelID == "model_restoration") {
    configuration = RepairSettings();
  } else if (modelID == "model_soundeffects") {
    configuration.SetValue(orvel::SectionSoundEffectsConfig::kConfig_ReverbPresets,
                           ReverbPresetTree(mode));
  }
  return configuration;
}

orvel::ConfigPreset MakePreset(const Template& row) {
  orvel::ConfigPreset preset;
  preset.Guid = orvel::Guid(row.guid);
  preset.Name = kName;
  preset.PresetData.ModeID = row.mode;
  preset.PresetData.Models["model_loudness"] = LoudnessConfiguration(row.loudness);
  preset.PresetData.Models["model_volume"] = VolumeConfiguration();
  for (const char* modelID : row.sections) {
    preset.PresetData.Models[modelID] = SectionConfiguration(modelID, row.mode);
  }
  return preset;
}

}  // namespace

const std::vector<orvel::ConfigPreset>& FactoryTemplates() {
  static const std::vector<orvel::ConfigPreset> presets = [] {
    std::vector<orvel::ConfigPreset> made;
    std::ranges::transform(Templates(), std::back_inserter(made), &MakePreset);
    return made;
  }();
  return presets;
}

const orvel::ConfigPreset& FactoryTemplate(const std::string& mode) {
  const auto found = std::ranges::find_if(
      FactoryTemplates(), [&](const auto& preset) { return preset.PresetData.ModeID == mode; });
  assert(found != FactoryTemplates().end());
  return *found;
}

}  // namespace orvelhost
