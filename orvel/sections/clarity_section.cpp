#include "orvel/sections/clarity_section.h"

#include <algorithm>

#include "orvel/core/component_ids.h"
#include "orvel/core/localizer.h"
#include "orvel/definitions/normalized_value.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/sections/preset_table.h"

namespace orvel {

const std::string SectionClarityConfig::kConfig_EQPresets = "EQPresets";

const std::u16string& SectionClarityConfig::GetDynamicsComponentID() { return kDynamicsID; }
const std::u16string& SectionClarityConfig::GetEQComponentID() { return kGraphicEQ10BandsID; }
const std::u16string& SectionClarityConfig::GetVocalEnhanceComponentID() {
  return kIzotopeVocalEnhancerID;
}

namespace {

constexpr char kModelID[] = "model_clarity";

constexpr auto kPresetList = kParamFlag_RangeVaries | kParamFlag_ListEntry | kParamFlag_Stepped;
constexpr auto kReadBack = kParamFlag_NotStored;
constexpr auto kStatus = kParamFlag_NotStored | kParamFlag_Stepped;
constexpr auto kTrigger = kParamFlag_Trigger | kParamFlag_Switch;

}  // namespace

// clang-format off
const std::vector<ParamDefinition> SectionModelClarityParams::sParamDefinitions = {
  // id                    default  min    max   flags              name                   description                                key
  { kEnabled,              1.0f,    0.0f,  1.0f, kParamFlag_Switch, "Enabled",             "Enables the Clarity Section",             "CLARITY_ENABLED"                  },
  { kEnableDynamics,       0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableDynamics",      "Enables Dynamics Control",                "CLARITY_ENABLE_DYNAMICS"          },
  { kDynamicsAmount,       5.0f,    0.0f, 10.0f, kParamFlag_None,   "DynamicsAmount",      "Controls Amount of Dynamics",             "CLARITY_DYNAMICS"                 },
  { kEnableEQ,             0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableEQ",            "Enables 10 Band Equalizer",               "CLARITY_ENABLE_EQ"                },
  { kEQAmount,             5.0f,    0.0f, 10.0f, kParamFlag_None,   "EQAmount",            "Controls Amount of 10 Band Equalizer",    "CLARITY_EQ"                       },
  { kEQPreset,             0.0f,    0.0f,  1.0f, kPresetList,       "EQPreset",            "Changes EQ Parameter Preset",             "CLARITY_EQ_PRESET"                },
  { kEnableVocalEnhancer,  0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableVocalEnhancer", "Enables Vocal Enhancer",                  "CLARITY_ENABLE_VOCALENHANCE"      },
  { kVocalEnhancerMode,    0.0f,    0.0f,  1.0f, kParamFlag_Switch, "VocalEnhancerMode",   "Controls Vocal Enhancer Mode",            "CLARITY_VOCALENHANCE"             },
  { kEQCurveValue0 + 0,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue0",       "Read Value of 1st EQ Band",               "CLARITY_EQCURVE_0"                },
  { kEQCurveValue0 + 1,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue1",       "Read Value of 2nd EQ Band",               "CLARITY_EQCURVE_1"                },
  { kEQCurveValue0 + 2,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue2",       "Read Value of 3rd EQ Band",               "CLARITY_EQCURVE_2"                },
  { kEQCurveValue0 + 3,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue3",       "Read Value of 4th EQ Band",               "CLARITY_EQCURVE_3"                },
  { kEQCurveValue0 + 4,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue4",       "Read Value of 5th EQ Band",               "CLARITY_EQCURVE_4"                },
  { kEQCurveValue0 + 5,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue5",       "Read Value of 6th EQ Band",               "CLARITY_EQCURVE_5"                },
  { kEQCurveValue0 + 6,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue6",       "Read Value of 7th EQ Band",               "CLARITY_EQCURVE_6"                },
  { kEQCurveValue0 + 7,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue7",       "Read Value of 8th EQ Band",               "CLARITY_EQCURVE_7"                },
  { kEQCurveValue0 + 8,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue8",       "Read Value of 9th EQ Band",               "CLARITY_EQCURVE_8"                },
  { kEQCurveValue0 + 9,    0.0f,    0.0f,  1.0f, kReadBack,         "EQCurveValue9",       "Read Value of 10th EQ Band",              "CLARITY_EQCURVE_9"                },
  { kAnalysisStatus,       0.0f,    0.0f,  4.0f, kStatus,           "AnalysisStatus",      "Get current Analysis Status",             "CLARITY_DYNAMICS_ANALYSIS_STATUS" },
  { kReanalyzeDynamics,    0.0f,    0.0f,  1.0f, kTrigger,          "ReanalyzeDynamics",   "Reanalyze the clip's dynamics features",  "CLARITY_DYNAMICS_RESET_ANALYSIS"  },
};
// clang-format on

namespace {

using Params = SectionModelClarityParams;

// The dynamics processor's parameters that are driven here. Its curve is a row of points, each an
// input and an output level on a scale of -100..0 dBFS.
enum DynamicsParam : unsigned {
  kPointCount = 10,  // how many points the curve has, on a scale of 0..7
  kMakeUp = 14,
  kFirstIn = 17,
  kFirstOut,
  kSecondIn,
  kSecondOut,
  kThirdIn,
  kThirdOut,
  kFourthIn,
  kFourthOut,
  kFifthIn,
  kFifthOut,
  kSixthIn,
  kSixthOut,
};
constexpr float kPointCountMax = 7.0f;

// The equaliser's parameters: four settings, ten band gains with 0.5 for flat, and one that no
// preset changes.
enum EQParam : unsigned { kFirstBand = 4, kLastBand = 13, kNeverMapped = 14 };
constexpr float kFlat = 0.5f;

// The vocal enhancer has three modes, of which the section offers two: its second for 0, its first
// for 1.
enum EnhancerParam : unsigned { kMode = 0 };
constexpr float kModeMax = 2.0f;

constexpr int kDynamicsOrder = 40;
constexpr int kEQOrder = 45;
constexpr int kVocalEnhancerOrder = 50;

float PointCount(float count) { return modelutils::ToNormalized(0.0f, kPointCountMax, count); }

ControlDefinition BuildDynamicsControl() {
  ControlDefinition control(SectionClarityConfig::GetDynamicsComponentID(), Params::kEnableDynamics,
                            "Dynamics");
  control.SetEffectOrderNumber(kDynamicsOrder);
  // clang-format off
  const ParameterMapping mappings[] = {
    // effect param  keypoints         curve
    { kPointCount,   PointCount(3.0f), 1.0f },
    { kFirstIn,      0.0f,             1.0f },
    { kFirstOut,     0.0f, 0.4f,       1.0f },
    { kSecondIn,     0.6f, 0.7f,       1.0f },
    { kSecondOut,    0.7f, 0.6f,       1.0f },
    { kThirdIn,      1.0f,             1.0f },
    { kThirdOut,     1.0f, 0.8f,       1.0f },
    { kMakeUp,       1.0f,             1.0f },
  };
  // clang-format on
  for (const auto& mapping : mappings) {
    control.AddParameterMapping(Params::kDynamicsAmount, mapping);
  }
  return control;
}

// How much of a preset's deviation from flat an amount of 0..1 leaves. It never reaches 0, so the
// way back divides by no zero.
float GetDeviation(float amount) { return amount * 0.99f + 0.01f; }

float BlendTowardsFlat(float gain, float amount) {
  const float deviation = GetDeviation(amount);
  return gain * deviation + (1.0f - deviation) * kFlat;
}

float UndoBlend(float gain, float amount) {
  const float deviation = GetDeviation(amount);
  return (gain - (1.0f - deviation) * kFlat) / deviation;
}

ControlDefinition BuildEQControl(const PropList& configuration,
                                 std::vector<ParamDefinition>& params) {
  ControlDefinition control(SectionClarityConfig::GetEQComponentID(), Params::kEnableEQ, "EQ");
  control.SetEffectOrderNumber(kEQOrder);

  PresetTable presets = ReadPresetTable(configuration, SectionClarityConfig::kConfig_EQPresets,
                                        kNeverMapped, kNeverMapped);
  params[Params::kEQPreset].maxValue = presets.GetSelectorMaximum();

  const ParameterModifier amount(Params::kEQAmount, BlendTowardsFlat, UndoBlend);
  control.AddParameterModifier(amount);
  for (auto& mapping : presets.mappings) {
    const unsigned index = mapping.GetParamIndex();
    if (index >= kFirstBand && index <= kLastBand) mapping.SetModifier(amount);
    control.AddParameterMapping(Params::kEQPreset, mapping);
  }
  for (unsigned band = kFirstBand; band <= kLastBand; ++band) {
    control.AddParameterMapping(Params::kEQCurveValue0 + static_cast<int>(band - kFirstBand),
                                ParameterMapping(band, 0.0f, 1.0f, 1.0f));
  }
  return control;
}

ControlDefinition BuildVocalEnhancerControl() {
  using modelutils::ToNormalized;
  ControlDefinition control(SectionClarityConfig::GetVocalEnhanceComponentID(),
                            Params::kEnableVocalEnhancer, "VocalEnhancer");
  control.SetEffectOrderNumber(kVocalEnhancerOrder);
  control.AddParameterMapping(Params::kVocalEnhancerMode,
                              ParameterMapping(kMode, ToNormalized(0.0f, kModeMax, 1.0f),
                                               ToNormalized(0.0f, kModeMax, 0.0f), 1.0f));
  return control;
}

SectionDefinition BuildClaritySection(const PropList& configuration) {
  auto params = Params::sParamDefinitions;
  std::vector<ControlDefinition> controls;
  controls.push_back(BuildDynamicsControl());
  controls.push_back(BuildEQControl(configuration, params));
  controls.push_back(BuildVocalEnhancerControl());
  return {kModelID,      ZString("$$$/orvel/Sections/Clarity=Clarity"),
          configuration, params,
          controls,      "ClaritySection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildClaritySection);

// A level in dBFS on the curve's scale of -100..0 dBFS. In double precision: the processor's points
// were tuned with it.
float ToScale(float level) { return static_cast<float>(static_cast<double>(level) * 0.01 + 1.0); }

// The lower bound first: where the two cross, the upper one holds. A NaN gives the lower.
float Bound(float value, float lower, float upper) {
  const float raised = value > lower ? value : lower;
  return raised < upper ? raised : upper;
}

}  // namespace

std::vector<ParameterMapping> SectionClarityConfig::ComputeDynamicsProcessorSettings(
    float upperLevel, float lowerLevel) {
  const float middle = Bound(ToScale((upperLevel + lowerLevel) * 0.5f), 0.01f, 1.0f);
  const float peak = Bound(ToScale(upperLevel), middle + 0.02f, 1.0f);
  const float above = middle + 0.01f;
  // clang-format off
  return {
    // effect param  keypoints                      curve
    { kPointCount,   PointCount(6.0f),              1.0f },
    { kMakeUp,       1.0f,                          1.0f },
    { kFirstIn,      0.0f,                          1.0f },
    { kFirstOut,     0.0f,                          1.0f },
    { kSecondIn,     middle * 0.5f,                 1.0f },
    { kSecondOut,    middle * 0.5f, 0.0f,           1.0f },
    { kThirdIn,      middle * 0.8f,                 1.0f },
    { kThirdOut,     middle * 0.8f, middle * 0.4f,  2.0f },
    { kFourthIn,     above,                         1.0f },
    { kFourthOut,    above,                         1.0f },
    { kFifthIn,      peak,                          1.0f },
    { kFifthOut,     peak, std::max(peak, 0.95f),   1.5f },
    { kSixthIn,      1.0f,                          1.0f },
    { kSixthOut,     1.0f, 0.98f,                   1.0f },
  };
  // clang-format on
}

}  // namespace orvel
