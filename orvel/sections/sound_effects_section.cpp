#include "orvel/sections/sound_effects_section.h"

#include "orvel/core/component_ids.h"
#include "orvel/core/localizer.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/sections/preset_table.h"

namespace orvel {

const std::string SectionSoundEffectsConfig::kConfig_ReverbPresets = "ReverbPresets";

const std::u16string& SectionSoundEffectsConfig::GetReverbComponentID() { return kStudioReverbID; }

namespace {

constexpr char kModelID[] = "model_soundeffects";

constexpr auto kPresetList = kParamFlag_RangeVaries | kParamFlag_ListEntry | kParamFlag_Stepped;

}  // namespace

// clang-format off
const std::vector<ParamDefinition> SectionModelSoundEffectsParams::sParamDefinitions = {
  // id             default  min    max   flags              name            description                          key
  { kEnabled,       1.0f,    0.0f,  1.0f, kParamFlag_Switch, "Enabled",      "Enables the Sound Effects Section", "SOUND_EFFECTS_ENABLED"       },
  { kEnableReverb,  0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableReverb", "Enables Reverb Control",            "SOUND_EFFECTS_ENABLE_REVERB" },
  { kAdjustReverb,  5.0f,    0.0f, 10.0f, kParamFlag_None,   "AdjustReverb", "Controls Amount of Reverb",         "SOUND_EFFECTS_REVERB"        },
  { kReverbPreset,  0.0f,    0.0f,  1.0f, kPresetList,       "ReverbPreset", "The Current Reverb Preset",         "SOUND_EFFECTS_REVERB_PRESET" },
};
// clang-format on

namespace {

// The reverb's parameters, as far as they are not a preset's affair: the amount crossfades the two
// levels, and what follows them keeps the effect's own values.
enum ReverbParam : unsigned { kDryLevel = 9, kWetLevel = 10, kLastOwn = 12 };

constexpr int kEffectOrder = 80;

SectionDefinition BuildSoundEffectsSection(const PropList& configuration) {
  using Params = SectionModelSoundEffectsParams;
  auto params = Params::sParamDefinitions;

  ControlDefinition control(SectionSoundEffectsConfig::GetReverbComponentID(),
                            Params::kEnableReverb, "Reverb");
  control.SetEffectOrderNumber(kEffectOrder);
  control.AddParameterMapping(Params::kAdjustReverb, ParameterMapping(kDryLevel, 1.0f, 0.0f, 1.0f));
  control.AddParameterMapping(Params::kAdjustReverb, ParameterMapping(kWetLevel, 0.0f, 1.0f, 1.0f));

  const PresetTable presets = ReadPresetTable(
      configuration, SectionSoundEffectsConfig::kConfig_ReverbPresets, kDryLevel, kLastOwn);
  params[Params::kReverbPreset].maxValue = presets.GetSelectorMaximum();
  for (const auto& mapping : presets.mappings) {
    control.AddParameterMapping(Params::kReverbPreset, mapping);
  }

  return {kModelID,      ZString("$$$/orvel/Sections/SoundEffects=Creative"),
          configuration, params,
          {control},     "SoundEffectsSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildSoundEffectsSection);

}  // namespace
}  // namespace orvel
