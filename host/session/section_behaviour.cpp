#include "host/session/section_behaviour.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "host/timing/stretch.h"

namespace orvelhost {
namespace {

using Pan = orvel::SectionModelPanParams;
using Restoration = orvel::SectionModelRestorationParams;
using Clarity = orvel::SectionModelClarityParams;
using Loudness = orvel::SectionModelLoudnessParams;
using Duration = orvel::SectionModelDurationParams;

/// For a section whose status concerns `switchID`.
AnalysisStatus StatusOf(const SectionState& state, int switchID) {
  const AnalysisStatus status = state.GetClip().MeasurementStatus();
  return status == kAnalysis_Running && !state.IsOn(switchID) ? kAnalysis_None : status;
}

void ApplyPan(SectionState& state) {
  Clip& clip = state.GetClip();
  const double end = state.Definition().GetParamDefinitions()[Pan::kPan].maxValue;
  clip.Chain().SetPan(state.IsOn(Pan::kEnabled) ? state.Physical(Pan::kPan) / end : 0.0);
  state.Show(Pan::kPanNotSupported, clip.Format().channelCount > 2 ? 1.0 : 0.0);
}

MeasurementNeed SoundIf(bool isNeeded) {
  return isNeeded ? MeasurementNeed::kSound : MeasurementNeed::kNothing;
}

MeasurementNeed RestorationNeeds(const SectionState& state) {
  return SoundIf(state.IsOn(Restoration::kEnableReduceNoise) ||
                 state.IsOn(Restoration::kEnableReduceHum));
}

MeasurementNeed ClarityNeeds(const SectionState& state) {
  return SoundIf(state.IsOn(Clarity::kEnableDynamics));
}

/// The dynamics effect follows what was measured; until then the control's own mappings hold.
void ApplyClarity(SectionState& state) {
  Clip& clip = state.GetClip();
  AnalysisStatus status = StatusOf(state, Clarity::kEnableDynamics);
  if (clip.Measurement() && !clip.Measurement()->analysis.dynamics) {
    status = kAnalysis_NotMeasurable;
  }
  state.Show(Clarity::kAnalysisStatus, status);
  for (const orvel::ControlDefinition& control : state.Definition().GetControlDefinitions()) {
    EffectSlot* slot = clip.Chain().Slot(control.GetComponentID(), control.GetEffectOrderNumber());
    if (slot == nullptr) {
      continue;
    }
    if (control.GetComponentID() == orvel::SectionClarityConfig::GetDynamicsComponentID() &&
        clip.Measurement() && clip.Measurement()->analysis.dynamics) {
      const DynamicsLevels& levels = *clip.Measurement()->analysis.dynamics;
      for (const orvel::ParameterMapping& mapping :
           orvel::SectionClarityConfig::ComputeDynamicsProcessorSettings(levels.upper,
                                                                         levels.lower)) {
        slot->parameters[mapping.GetParamIndex()] = std::clamp(
            mapping.FromNormalized(state.Normalized(Clarity::kDynamicsAmount)), 0.0f, 1.0f);
      }
    }
  }
}

MeasurementNeed LoudnessNeeds(const SectionState& state) {
  return SoundIf(state.IsOn(Loudness::kAutoLoudness));
}

LoudnessTarget TargetOf(const orvel::SectionDefinition& definition) {
  using Config = orvel::SectionLoudnessConfig;
  const auto read = [&](const std::string& key, double value) {
    float stored = static_cast<float>(value);
    definition.GetConfiguration().GetValue(key, stored);
    return static_cast<double>(stored);
  };
  constexpr double kNoLimit = std::numeric_limits<double>::infinity();
  const double least = read(Config::kConfig_MinLoudness, -kNoLimit);
  const double greatest = read(Config::kConfig_MaxLoudness, kNoLimit);
  const double target = read(Config::kConfig_DefaultLoudness, LoudnessTarget().target);
  return {.target = std::max(least, std::min(target, greatest))};
}

void ApplyLoudness(SectionState& state) {
  Clip& clip = state.GetClip();
  const bool on = state.IsOn(Loudness::kAutoLoudness);
  const LoudnessTarget target = TargetOf(state.Definition());
  clip.Chain().SetLoudness(on ? std::optional(target) : std::nullopt, 0.0);
  if (!clip.Measurement()) {
    state.Show(Loudness::kAnalysisStatus, StatusOf(state, Loudness::kAutoLoudness));
    state.Show(Loudness::kMeasuredLoudness, 0.0);
    state.Show(Loudness::kAdjustedLoudness, 0.0);
    return;
  }
  const ClipAnalysis& analysis = clip.Measurement()->analysis;
  const LoudnessMatch match = MatchLoudness(analysis.loudness, analysis.truePeak, target);
  state.Show(Loudness::kMeasuredLoudness, analysis.loudness);
  state.Show(Loudness::kAdjustedLoudness, on ? match.reached : analysis.loudness);
  state.Show(Loudness::kAnalysisStatus,
             on || match.status == kAnalysis_NotMeasurable ? match.status : kAnalysis_Done);
  if (on) {
    clip.Chain().SetLoudness(target, match.gain);
  }
}

/// Mode is a switch between remix and stretch.
MeasurementNeed DurationNeeds(const SectionState& state) {
  return !state.IsOn(Duration::kEnabled) ? MeasurementNeed::kNothing
         : state.IsOn(Duration::kMode)   ? MeasurementNeed::kSound
                                         : MeasurementNeed::kSoundAndRemix;
}

/// In seconds: a fraction, or the numerator alone when the denominator is 0.
double TargetDuration(const SectionState& state) {
  const double denominator = state.Physical(Duration::kDurationDenominator);
  return state.Physical(Duration::kTargetDuration) / (denominator > 0.0 ? denominator : 1.0);
}

/// How long the clip can become; what cannot be remixed, as far as is known, stays as long as it
/// is.
DurationRange RangeOf(const ClipMeasurement& measurement, bool isStretched) {
  const double now = measurement.analysis.Duration();
  if (isStretched) return StretchRange(now);
  return measurement.remix ? RemixRange(*measurement.remix) : DurationRange{now, now};
}

void ApplyDuration(SectionState& state) {
  Clip& clip = state.GetClip();
  state.Show(Duration::kSamplerate, clip.Format().sampleRate);
  if (clip.Measurement()) {
    const DurationRange range =
        RangeOf(*clip.Measurement(), state.Normalized(Duration::kMode) >= 0.5f);
    state.Show(Duration::kMinDuration, range.least);
    state.Show(Duration::kMaxDuration, range.greatest);
  }
  const double seconds = TargetDuration(state);
  clip.Chain().SetDuration(
      state.IsOn(Duration::kEnabled) && seconds > 0.0
          ? std::optional(DurationRequest{seconds, !state.IsOn(Duration::kMode),
                                          state.IsOn(Duration::kFavorShorterSegments)})
          : std::nullopt);
}

// clang-format off
constexpr std::array<SectionBehaviour, 5> kBehaviours = {{
    { "model_pan",         nullptr,            &ApplyPan      },
    { "model_restoration", &RestorationNeeds,  nullptr        },
    { "model_clarity",     &ClarityNeeds,      &ApplyClarity  },
    { "model_loudness",    &LoudnessNeeds,     &ApplyLoudness },
    { "model_duration",    &DurationNeeds,     &ApplyDuration },
}};
// clang-format on

}  // namespace

bool SectionState::IsOn(int switchID) const {
  constexpr float kSwitchedOn = 0.5f;
  return Normalized(definition_.GetEnableParam().id) >= kSwitchedOn &&
         Normalized(switchID) >= kSwitchedOn;
}

double SectionState::Physical(int paramID) const {
  const orvel::ParamDefinition& param =
      definition_.GetParamDefinitions()[static_cast<std::size_t>(paramID)];
  return orvel::modelutils::ToPhysical(param.minValue, param.maxValue, Normalized(paramID));
}

void SectionState::Show(int paramID, double physical) {
  const orvel::ParamDefinition& param =
      definition_.GetParamDefinitions()[static_cast<std::size_t>(paramID)];
  values_[static_cast<std::size_t>(paramID)] = std::clamp(
      orvel::modelutils::ToNormalized(param.minValue, param.maxValue, static_cast<float>(physical)),
      0.0f, 1.0f);
}

const SectionBehaviour* FindBehaviour(const std::string& modelID) {
  const auto found = std::ranges::find_if(
      kBehaviours, [&](const SectionBehaviour& one) { return modelID == one.modelID; });
  return found == kBehaviours.end() ? nullptr : &*found;
}

}  // namespace orvelhost
