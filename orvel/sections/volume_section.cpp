#include "orvel/sections/volume_section.h"

#include "orvel/core/component_ids.h"
#include "orvel/core/localizer.h"
#include "orvel/definitions/normalized_value.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {

const std::string SectionVolumeConfig::kConfig_MinGain = "MinGain";
const std::string SectionVolumeConfig::kConfig_MaxGain = "MaxGain";

const std::u16string& SectionVolumeConfig::GetGainComponentID() { return kHardLimiterID; }

namespace {

constexpr char kModelID[] = "model_volume";
constexpr float kDefaultMinGain = -15.0f;
constexpr float kDefaultMaxGain = 6.0f;

}  // namespace

// clang-format off
const std::vector<ParamDefinition> SectionModelVolumeParams::sParamDefinitions = {
  // id             default  min              max              flags                    name            description                   key
  { kEnabled,       1.0f,    0.0f,            1.0f,            kParamFlag_Switch,       "Enabled",      "Enables the Volume Section", "VOLUME_ENABLED"       },
  { kEnableVolume,  0.0f,    0.0f,            1.0f,            kParamFlag_Switch,       "EnableVolume", "Enables Volume Control",     "VOLUME_ENABLE_VOLUME" },
  { kVolume,        0.0f,    kDefaultMinGain, kDefaultMaxGain, kParamFlag_RangeVaries,  "Volume",       "Controls Volume Amount",     "VOLUME_AMOUNT"        },
};
// clang-format on

namespace {

// The hard limiter's parameters and their scales, in dB.
enum LimiterParam : unsigned { kCeiling = 0, kGain = 1 };
constexpr float kCeilingMin = -100.0f;
constexpr float kCeilingMax = 0.0f;
constexpr float kGainMin = -100.0f;
constexpr float kGainMax = 50.0f;

// The ceiling comes down as the slider goes up, so that a loud setting keeps room for the peaks
// that it makes.
constexpr float kCeilingAtMinimum = 0.0f;
constexpr float kCeilingAtMaximum = -3.0f;

constexpr int kEffectOrder = 100;

ControlDefinition BuildGainControl(float minGain, float maxGain) {
  using modelutils::ToNormalized;
  ControlDefinition control(SectionVolumeConfig::GetGainComponentID(),
                            SectionModelVolumeParams::kEnableVolume, "Gain");
  control.SetEffectOrderNumber(kEffectOrder);
  control.AddParameterMapping(SectionModelVolumeParams::kVolume,
                              ParameterMapping(kGain, ToNormalized(kGainMin, kGainMax, minGain),
                                               ToNormalized(kGainMin, kGainMax, maxGain), 1.0f));
  control.AddParameterMapping(
      SectionModelVolumeParams::kVolume,
      ParameterMapping(kCeiling, ToNormalized(kCeilingMin, kCeilingMax, kCeilingAtMinimum),
                       ToNormalized(kCeilingMin, kCeilingMax, kCeilingAtMaximum), 1.0f));
  return control;
}

SectionDefinition BuildVolumeSection(const PropList& configuration) {
  float minGain = kDefaultMinGain;
  float maxGain = kDefaultMaxGain;
  configuration.GetValue(SectionVolumeConfig::kConfig_MinGain, minGain);
  configuration.GetValue(SectionVolumeConfig::kConfig_MaxGain, maxGain);

  auto params = SectionModelVolumeParams::sParamDefinitions;
  params[SectionModelVolumeParams::kVolume].minValue = minGain;
  params[SectionModelVolumeParams::kVolume].maxValue = maxGain;

  return {kModelID, ZString("$$$/orvel/Sections/Volume=Volume"), configuration,
          params,   {BuildGainControl(minGain, maxGain)},        "VolumeSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildVolumeSection);

}  // namespace
}  // namespace orvel
