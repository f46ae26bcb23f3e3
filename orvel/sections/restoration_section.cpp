#include "orvel/sections/restoration_section.h"

#include <algorithm>

#include "orvel/core/component_ids.h"
#include "orvel/core/localizer.h"
#include "orvel/definitions/normalized_value.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {

using Config = SectionRestorationConfig;

const std::string Config::kConfig_ReduceNoiseMinSetting = "ReduceNoiseMinSetting";
const std::string Config::kConfig_ReduceNoiseMaxSetting = "ReduceNoiseMaxSetting";
const std::string Config::kConfig_ReduceSibilanceMinSetting = "ReduceSibilanceMinSetting";
const std::string Config::kConfig_ReduceSibilanceMaxSetting = "ReduceSibilanceMaxSetting";
const std::string Config::kConfig_ReduceRumbleMinSetting = "ReduceRumbleMinSetting";
const std::string Config::kConfig_ReduceRumbleMaxSetting = "ReduceRumbleMaxSetting";

const std::u16string& Config::GetReduceNoiseComponentID() { return kAdaptiveNoiseReductionID; }
const std::u16string& Config::GetReduceHumComponentID() { return kIzotopeDeHummerID; }
const std::u16string& Config::GetReduceSibilanceComponentID() { return kIzotopeDeEsserID; }
const std::u16string& Config::GetReduceRumbleComponentID() { return kFFTFilterID; }

// clang-format off
const std::vector<ParamDefinition> SectionModelRestorationParams::sParamDefinitions = {
  // id                      default  min    max    flags              name                     description                              key
  { kEnabled,                 1.0f,    0.0f,  1.0f, kParamFlag_Switch, "Enabled",               "Enables the restoration section",       "RESTORATION_ENABLED"                 },
  { kEnableReduceNoise,       0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableReduceNoise",     "Enables Noise Reduction Control",       "RESTORATION_ENABLE_REDUCE_NOISE"     },
  { kReduceNoise,             5.0f,    0.0f, 10.0f, kParamFlag_None,   "ReduceNoise",           "Controls Amount of Noise Reduction",    "RESTORATION_REDUCE_NOISE"            },
  { kEnableReduceHum,         0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableReduceHum",       "Enables the Hum Reduction Section",     "RESTORATION_ENABLE_REDUCE_HUM"       },
  { kReduceHum,               5.0f,    0.0f, 10.0f, kParamFlag_None,   "ReduceHum",             "Controls Amount of Hum Reduction",      "RESTORATION_REDUCE_HUM"              },
  { kEnableReduceSibilance,   0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableReduceSibilance", "Enables Sibilance Reduction",           "RESTORATION_ENABLE_REDUCE_SIBILANCE" },
  { kReduceSibilance,         5.0f,    0.0f, 10.0f, kParamFlag_None,   "ReduceSibilance",       "Controls Amount of Sibilance Reduction","RESTORATION_REDUCE_SIBILANCE"        },
  { kEnableReduceRumble,      0.0f,    0.0f,  1.0f, kParamFlag_Switch, "EnableReduceRumble",    "Enabled Rumble Reduction",              "RESTORATION_ENABLE_REDUCE_RUMBLE"    },
  { kReduceRumble,            5.0f,    0.0f, 10.0f, kParamFlag_None,   "ReduceRumble",          "Controls Amount of Rumble Reduction",   "RESTORATION_REDUCE_RUMBLE"           },
  { kHumFrequency,           50.0f,   50.0f, 60.0f, kParamFlag_Switch, "HumFrequency",          "Sets the Hum Reduction Frequency",      "RESTORATION_HUM_FREQUENCY"           },
};
// clang-format on

namespace {

constexpr char kModelID[] = "model_restoration";

using modelutils::ToNormalized;
using Floats = std::vector<float>;
using Params = SectionModelRestorationParams;

constexpr int kNoiseOrder = 20;
constexpr int kRumbleOrder = 25;
constexpr int kHumOrder = 30;
constexpr int kSibilanceOrder = 47;

// One effect parameter that sweeps from its setting at amount 0 to its setting at full amount.
struct Sweep {
  unsigned index;
  float defaultStart;
  float defaultEnd;
};

// The settings of a tool at amount 0 and at full amount.
struct Settings {
  Settings(const PropList& configuration, const std::string& startKey, const std::string& endKey) {
    configuration.GetValue(startKey, start);
    configuration.GetValue(endKey, end);
  }
  ParameterMapping Map(const Sweep& sweep) const {
    return ParameterMapping::FromSettings(sweep.index, start, end, sweep.defaultStart,
                                          sweep.defaultEnd, 1.0f);
  }
  ParameterMapping MapConstant(unsigned index, float fallback) const {
    return {index, index < start.size() ? start[index] : fallback, 1.0f};
  }
  Floats start;
  Floats end;
};

enum NoiseParam : unsigned {
  kReduction,
  kNoisiness,
  kFloorTuning,
  kThreshold,
  kDecayRate,
  kPreservation,
  kTransformSize,
  kQuality,
};
constexpr float kMaxTransformSize = 65536.0f;  // in samples

// clang-format off
constexpr Sweep kNoiseSweeps[] = {
  // effect param   amount 0    full amount
  { kReduction,     0.375f,     0.6f      },
  { kNoisiness,     0.2f,       0.4f      },
  { kFloorTuning,   0.6f,       0.5f      },
  { kThreshold,     0.5625f,    0.5f      },
  { kDecayRate,     0.109589f,  0.246575f },
  { kPreservation,  0.3f,       0.6f      },
};
// clang-format on

ControlDefinition BuildNoiseControl(const PropList& configuration) {
  ControlDefinition control(Config::GetReduceNoiseComponentID(), Params::kEnableReduceNoise,
                            "ReduceNoise");
  control.SetEffectOrderNumber(kNoiseOrder);
  control.SetCPUIntensive(true);
  const Settings settings(configuration, Config::kConfig_ReduceNoiseMinSetting,
                          Config::kConfig_ReduceNoiseMaxSetting);
  for (const Sweep& sweep : kNoiseSweeps) {
    control.AddParameterMapping(Params::kReduceNoise, settings.Map(sweep));
  }
  if (settings.start.size() > kTransformSize) {
    const float size = settings.start[kTransformSize];
    const float normalized = size > 1.0f ? size / kMaxTransformSize : size;
    control.AddParameterMapping(Params::kReduceNoise,
                                ParameterMapping(kTransformSize, normalized, 1.0f));
  }
  control.AddParameterMapping(Params::kReduceNoise, settings.MapConstant(kQuality, 0.0f));
  return control;
}

enum HumParam : unsigned { kBaseFrequency = 0, kHarmonicGain = 2 };

ControlDefinition BuildHumControl() {
  ControlDefinition control(Config::GetReduceHumComponentID(), Params::kEnableReduceHum,
                            "ReduceHum");
  control.SetEffectOrderNumber(kHumOrder);
  control.AddParameterMapping(Params::kReduceHum,
                              ParameterMapping(kHarmonicGain, ToNormalized(-80.0f, 5.0f, -10.0f),
                                               ToNormalized(-80.0f, 5.0f, -80.0f), 1.0f));
  control.AddParameterMapping(Params::kHumFrequency,
                              ParameterMapping(kBaseFrequency, ToNormalized(20.0f, 20000.0f, 50.0f),
                                               ToNormalized(20.0f, 20000.0f, 60.0f), 1.0f));
  return control;
}

enum SibilanceParam : unsigned {
  kSibilanceThreshold = 0,
  kCentreFrequency = 3,
  kBandwidth = 4,
  kOutputMode = 5,
  kMultiBand = 6,
};

ControlDefinition BuildSibilanceControl(const PropList& configuration) {
  ControlDefinition control(Config::GetReduceSibilanceComponentID(), Params::kEnableReduceSibilance,
                            "ReduceSibilance");
  control.SetEffectOrderNumber(kSibilanceOrder);
  const Settings settings(configuration, Config::kConfig_ReduceSibilanceMinSetting,
                          Config::kConfig_ReduceSibilanceMaxSetting);
  const float centre = ToNormalized(500.0f, 12000.0f, 4700.0f);
  // clang-format off
  const Sweep sweeps[] = {
    // effect param         amount 0                                full amount
    { kSibilanceThreshold,  ToNormalized(-80.0f, 0.0f, -12.0f),     ToNormalized(-80.0f, 0.0f, -48.0f)      },
    { kCentreFrequency,     centre,                                 centre                                  },
    { kBandwidth,           ToNormalized(100.0f, 7500.0f, 2500.0f), ToNormalized(100.0f, 7500.0f, 4000.0f)  },
  };
  // clang-format on
  for (const Sweep& sweep : sweeps) {
    control.AddParameterMapping(Params::kReduceSibilance, settings.Map(sweep));
  }
  control.AddParameterMapping(Params::kReduceSibilance, settings.MapConstant(kOutputMode, 0.0f));
  control.AddParameterMapping(Params::kReduceSibilance, settings.MapConstant(kMultiBand, 1.0f));
  return control;
}

// The filter curve: nine settings, the number of points, then a frequency and a gain for each
// point. Settings 5 and 6 keep the effect's own values.
enum FilterParam : unsigned {
  kOwnSetting5 = 5,
  kOwnSetting6 = 6,
  kPointCount = 9,
  kFirstPoint = 10
};
constexpr float kMaxPoints = 128.0f;
constexpr float kLowestFrequency = 0.0009070295f;  // 20 Hz at 44.1 kHz
constexpr float kFrequencySpacing = 0.00001f;      // keeps the points in strictly rising order
constexpr float kFlatGain = 0.75f;

float NormalizedPointCount(unsigned count) {
  return ToNormalized(0.0f, kMaxPoints, static_cast<float>(count));
}

// Whatever a configuration holds, the effect has no more points than this.
unsigned ReadPointCount(const Floats& settings) {
  const float count = settings[kPointCount] * kMaxPoints + 0.5f;
  return count > 0.0f ? static_cast<unsigned>(std::min(count, kMaxPoints)) : 0U;
}

float BoundFrequency(float frequency, unsigned point, unsigned count) {
  const float lowest = kLowestFrequency + static_cast<float>(point) * kFrequencySpacing;
  const float highest = 1.0f - static_cast<float>(count - point - 1) * kFrequencySpacing;
  return std::min(std::max(lowest, frequency), highest);
}

// Without usable curves: all below 80 Hz goes, from 100 Hz on nothing.
// clang-format off
const ParameterMapping kFallbackCurve[] = {
  // effect param      keypoints                  curve
  { kPointCount,       NormalizedPointCount(4),   1.0f },
  { kFirstPoint + 0,   kLowestFrequency,          1.0f },
  { kFirstPoint + 1,   kFlatGain, 0.0f,           1.0f },
  { kFirstPoint + 2,   0.003628118f,              1.0f },  // 80 Hz
  { kFirstPoint + 3,   kFlatGain, 0.0f,           1.0f },
  { kFirstPoint + 4,   0.0045351475f,             1.0f },  // 100 Hz
  { kFirstPoint + 5,   kFlatGain,                 1.0f },
  { kFirstPoint + 6,   1.0f,                      1.0f },
  { kFirstPoint + 7,   kFlatGain,                 1.0f },
};
// clang-format on

void AddConfiguredCurve(ControlDefinition& control, const Settings& settings) {
  const auto add = [&control](const ParameterMapping& mapping) {
    control.AddParameterMapping(Params::kReduceRumble, mapping);
  };
  const unsigned count = std::max(ReadPointCount(settings.start), ReadPointCount(settings.end));
  add(ParameterMapping(kPointCount, NormalizedPointCount(count), 1.0f));
  for (unsigned i = 0; i < settings.start.size(); ++i) {
    if (i == kOwnSetting5 || i == kOwnSetting6 || i == kPointCount) continue;
    float start = settings.start[i];
    float end = settings.end[i];
    if (i < kFirstPoint) {
      add(ParameterMapping(i, start, 1.0f));
      continue;
    }
    const unsigned point = (i - kFirstPoint) / 2;
    if (point >= count) break;
    if ((i - kFirstPoint) % 2 == 0) {
      start = BoundFrequency(start, point, count);
      end = BoundFrequency(end, point, count);
    }
    add(ParameterMapping(i, start, end, 1.0f));
  }
}

ControlDefinition BuildRumbleControl(const PropList& configuration) {
  ControlDefinition control(Config::GetReduceRumbleComponentID(), Params::kEnableReduceRumble,
                            "ReduceRumble");
  control.SetEffectOrderNumber(kRumbleOrder);
  const Settings settings(configuration, Config::kConfig_ReduceRumbleMinSetting,
                          Config::kConfig_ReduceRumbleMaxSetting);
  if (settings.start.size() == settings.end.size() && settings.start.size() > kPointCount) {
    AddConfiguredCurve(control, settings);
  } else {
    for (const auto& mapping : kFallbackCurve) {
      control.AddParameterMapping(Params::kReduceRumble, mapping);
    }
  }
  return control;
}

SectionDefinition BuildRestorationSection(const PropList& configuration) {
  return {kModelID,
          ZString("$$$/orvel/Sections/Repair=Repair"),
          configuration,
          Params::sParamDefinitions,
          {BuildNoiseControl(configuration), BuildHumControl(),
           BuildSibilanceControl(configuration), BuildRumbleControl(configuration)},
          "RestorationSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildRestorationSection);

}  // namespace
}  // namespace orvel
