#include "orvel/sections/loudness_section.h"

#include "orvel/core/localizer.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {

const std::string SectionLoudnessConfig::kConfig_DefaultLoudness = "DefaultLoudness";
const std::string SectionLoudnessConfig::kConfig_MinLoudness = "MinLoudness";
const std::string SectionLoudnessConfig::kConfig_MaxLoudness = "MaxLoudness";
const std::string SectionLoudnessConfig::kConfig_LoudnessStandard = "LoudnessStandard";

namespace {

constexpr char kModelID[] = "model_loudness";

constexpr auto kReadBack = kParamFlag_NotStored;
constexpr auto kStatus = kParamFlag_NotStored | kParamFlag_Stepped;
constexpr auto kTrigger = kParamFlag_Trigger | kParamFlag_Switch;

}  // namespace

// clang-format off
const std::vector<ParamDefinition> SectionModelLoudnessParams::sParamDefinitions = {
  // id                          default  min      max     flags              name                         description                         key
  { kEnabled,                    1.0f,    0.0f,    1.0f,   kParamFlag_Switch, "Enabled",                   "Enables the Loudness Section",     "LOUDNESS_ENABLED"         },
  { kAutoLoudness,               0.0f,    0.0f,    1.0f,   kParamFlag_Switch, "AutoLoudness",              "Turns on Auto Loudness",           "LOUDNESS_AUTO"            },
  { kMeasuredLoudness,           0.0f, -300.0f,  100.0f,   kReadBack,         "MeasuredLoudness",          "Get Measured Loudness from Model", "LOUDNESS_MEASURED"        },
  { kAdjustedLoudness,           0.0f, -300.0f,  100.0f,   kReadBack,         "AdjustedLoudness",          "Get Adjusted Loudness from Model", "LOUDNESS_ADJUSTED"        },
  { kAnalysisStatus,             0.0f,    0.0f,    4.0f,   kStatus,           "AnalysisStatus",            "Get current Analysis Status",      "LOUDNESS_ANALYSIS_STATUS" },
  { kResetLoudnessMeasurements,  0.0f,    0.0f,    1.0f,   kTrigger,          "ResetLoudnessMeasurements", "Reset Persisted Measurements",     "LOUDNESS_RESET_ANALYSIS"  },
};
// clang-format on

namespace {

SectionDefinition BuildLoudnessSection(const PropList& configuration) {
  return {kModelID,
          ZString("$$$/orvel/Sections/LoudnessModel=Loudness"),
          configuration,
          SectionModelLoudnessParams::sParamDefinitions,
          {},
          "LoudnessSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildLoudnessSection);

}  // namespace
}  // namespace orvel
