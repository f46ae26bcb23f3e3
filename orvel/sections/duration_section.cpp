#include "orvel/sections/duration_section.h"

#include "orvel/core/localizer.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {
namespace {

constexpr char kModelID[] = "model_duration";
constexpr float kOneDay = 86400.0f;

constexpr auto kReadBack = kParamFlag_NotStored;
constexpr auto kTarget = kParamFlag_DefaultWhenOff | kParamFlag_RangeVaries;
constexpr auto kTargetPart = kParamFlag_DefaultWhenOff | kParamFlag_Stepped;

}  // namespace

// The section starts switched off, alone among all: switched on it would change the length of every
// clip that it meets.
// clang-format off
const std::vector<ParamDefinition> SectionModelDurationParams::sParamDefinitions = {
  // id                     default  min   max          flags              name                    description                             key
  { kEnabled,               0.0f,    0.0f, 1.0f,        kParamFlag_Switch, "Enabled",              "Enables the Duration Section",         "DURATION_ENABLED"              },
  { kTargetDuration,        0.0f,    0.0f, kOneDay,     kTarget,           "TargetDuration",       "Sets the Target Duration Numerator",   "DURATION_TARGET"               },
  { kMode,                  1.0f,    0.0f, 1.0f,        kParamFlag_Switch, "Mode",                 "Changes the Mode (Remix/Stretch)",     "DURATION_MODE"                 },
  { kFavorShorterSegments,  0.0f,    0.0f, 1.0f,        kParamFlag_Switch, "FavorShorterSegments", "Favors shorter Segmnets during Remix", "DURATION_FAVOR_SHORT_SEGMENTS" },
  { kSamplerate,            0.0f,    0.0f, 10000000.0f, kReadBack,         "Samplerate",           "Samplerate of Clip (for TC Control)",  "DURATION_SAMPLERATE"           },
  { kMinDuration,           0.0f,    0.0f, kOneDay,     kReadBack,         "MinDuration",          "Minimum Duration in Seconds",          "DURATION_MIN_DURATION"         },
  { kMaxDuration,           kOneDay, 0.0f, kOneDay,     kReadBack,         "MaxDuration",          "Maximum Duration in Seconds",          "DURATION_MAX_DURATION"         },
  { kDurationDenominator,   0.0f,    0.0f, 100000.0f,   kTargetPart,       "DurationDenominator",  "Duration Denominator - forfeit if 0",  "DURATION_TARGET_DENOMINATOR"   },
};
// clang-format on

namespace {

SectionDefinition BuildDurationSection(const PropList& configuration) {
  return {kModelID,
          ZString("$$$/orvel/Sections/Duration=Duration"),
          configuration,
          SectionModelDurationParams::sParamDefinitions,
          {},
          "DurationSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildDurationSection);

}  // namespace
}  // namespace orvel
