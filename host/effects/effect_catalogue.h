#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace orvelhost {

/// One parameter of an effect, on its physical scale.
struct EffectParameter {
  const char* name;
  const char* unit;
  float minimum;
  float maximum;
  float initial;
};

/// An effect of a clip, as the sections' mappings and settings know it.
struct EffectDescription {
  const std::u16string& componentId;
  const char* name;
  std::span<const EffectParameter> parameters;
};

/// The parameters' places in the effect, which mappings and settings refer to.
namespace hardlimiter {
inline constexpr std::size_t kCeiling = 0;
inline constexpr std::size_t kGain = 1;
}  // namespace hardlimiter
namespace stereoexpander {
inline constexpr std::size_t kCentre = 0;
inline constexpr std::size_t kWidth = 1;
}  // namespace stereoexpander
namespace noisereduction {
enum Parameter : std::size_t {
  kReduction,
  kNoisiness,
  kFloorTuning,
  kThreshold,
  kDecayRate,
  kPreservation,
  kTransformSize,
  kQuality,
  kNoiseOnly,
};
}  // namespace noisereduction
namespace dehummer {
enum Parameter : std::size_t {
  kBaseFrequency,
  kSharpness,
  kHumLevel,
  kHarmonics,
  kHarmonicSlope,
  kHumOnly,
};
}  // namespace dehummer
namespace deesser {
enum Parameter : std::size_t {
  kThreshold,
  kAttack,
  kRelease,
  kCentreFrequency,
  kBandwidth,
  kSibilanceOnly,
  kSplitBand,
  kLookAhead,
  kKnee,
  kMakeUpGain,
  kListen,
  kReductionLimit,
  kLink,
  kMix,
  kRatio,
};
}  // namespace deesser
namespace fftfilter {
enum Parameter : std::size_t {
  kTransformSize,
  kWindow,
  kSmoothCurve,
  kOutputGain,
  kMix,
  kLevelView,
  kFrequencyView,
  kMinimumPhase,
  kBypass,
  kPointCount,  ///< what stands in points beyond it is not heard
  kFirstPoint,  ///< a frequency and a gain for each point
};
inline constexpr std::size_t kMaxPoints = 128;
}  // namespace fftfilter
namespace dynamics {
enum Parameter : std::size_t {
  kDetectorAttack,
  kDetectorRelease,
  kDetectorRms,
  kInputGain,
  kGainAttack,
  kGainRelease,
  kLookAhead,
  kLowCut,
  kHighCut,
  kOutputGain,
  kPointCount,  ///< what stands in points beyond it is not heard
  kLink,
  kSmoothCurve,
  kNoiseGate,
  kMakeUp,
  kMakeUpLimit,
  kMix,
  kFirstPoint,  ///< an input and an output level for each point
};
inline constexpr std::size_t kMaxPoints = 7;
}  // namespace dynamics
namespace graphicequalizer {
enum Parameter : std::size_t {
  kAccuracy,
  kMasterGain,
  kRange,
  kMinimumPhase,
  kFirstBand,  ///< the gain of a band is its share of the range
  kBypass = kFirstBand + 10,
};
inline constexpr std::size_t kBands = 10;
}  // namespace graphicequalizer
namespace vocalenhancer {
inline constexpr std::size_t kVoice = 0;
}  // namespace vocalenhancer
namespace studioreverb {
enum Parameter : std::size_t {
  kPreDelay,
  kDecay,
  kDiffusion,
  kEarlyReflections,
  kLowCut,
  kBassRatio,
  kHighCut,
  kDamping,
  kWidth,
  kDry,
  kWet,
  kEarlySpread,
  kPattern,
};
}  // namespace studioreverb

/// All effects that sections drive.
std::span<const EffectDescription> Effects();

/// The effect with this component id, or null when no section drives one of that id.
const EffectDescription* FindEffect(const std::u16string& componentId);

/// The effect's initial values, each in 0..1 over its parameter's range.
std::vector<float> InitialParameters(const EffectDescription& effect);

/// The place of `physical` on the parameter's range: 0 at its minimum, 1 at its maximum. Not
/// limited.
double FromEffectScale(const EffectParameter& parameter, double physical);

/// The physical value behind `normalized`: limited to 0..1 first, and the initial one for a NaN.
double ToEffectScale(const EffectParameter& parameter, float normalized);

}  // namespace orvelhost
