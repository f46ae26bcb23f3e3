#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/analysis/loudness_match.h"
#include "host/audio/filter_graph.h"
#include "host/effects/effect_filters.h"

namespace orvelhost {

/// One effect of a clip.
struct EffectSlot {
  std::u16string componentId;
  int orderNumber;
  bool enabled;
  std::vector<float> parameters;  ///< 0..1 each, in the effect's parameter order

  friend bool operator==(const EffectSlot&, const EffectSlot&) = default;
};

/// How long a clip is made.
struct DurationRequest {
  double seconds;
  bool remix;  ///< else it is stretched
  bool favorShortSegments;

  friend bool operator==(const DurationRequest&, const DurationRequest&) = default;
};

/// What happens to a clip's audio: it is made as long as asked, then come its effects, smaller
/// order numbers first, and then its place between left (-1) and right (1). Behind the effects that
/// shape the sound, and before those numbered kFinalEffects and more, stands the gain that brings
/// the clip to its loudness. A value.
class EffectChain {
 public:
  static constexpr int kFinalEffects = 100;

  /// The slot of the effect, added with the effect's initial parameters and switched off when it is
  /// new. Null when this host does not have the effect. Valid until a slot is added.
  EffectSlot* Slot(const std::u16string& componentId, int orderNumber);

  const std::vector<EffectSlot>& Slots() const { return slots_; }

  double Pan() const { return pan_; }
  void SetPan(double pan) { pan_ = pan; }

  const std::optional<DurationRequest>& Duration() const { return duration_; }
  void SetDuration(const std::optional<DurationRequest>& duration) { duration_ = duration; }

  /// None while the clip stays as loud as it is.
  const std::optional<LoudnessTarget>& Loudness() const { return loudness_; }
  /// In dB. Sections set it by the clip as it is; a render, by what the effects make of it.
  double LoudnessGain() const { return loudnessGain_; }
  void SetLoudness(const std::optional<LoudnessTarget>& target, double gain) {
    loudness_ = target;
    loudnessGain_ = gain;
  }

 private:
  std::vector<EffectSlot> slots_;
  double pan_ = 0.0;
  std::optional<DurationRequest> duration_;
  std::optional<LoudnessTarget> loudness_;
  double loudnessGain_ = 0.0;
};

/// The filters that realise the chain on a clip of the length that it is to have.
std::vector<FilterSpec> ChainFilters(const EffectChain& chain, const EffectContext& context);

/// Those of them before the gain for the loudness.
std::vector<FilterSpec> ShapingFilters(const EffectChain& chain, const EffectContext& context);

/// The names of the effects, and "Pan", that would be heard on stereo and change nothing on audio
/// of `channelCount` channels.
std::vector<std::string> UnheardEffects(const EffectChain& chain, int channelCount);

}  // namespace orvelhost
