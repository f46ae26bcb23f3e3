#pragma once

#include <string>
#include <vector>

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

/// What happens to a clip's audio: its effects, smaller order numbers first, and then its place
/// between left (-1) and right (1). A value.
class EffectChain {
 public:
  /// The slot of the effect, added with the effect's initial parameters and switched off when it is
  /// new. Null when this host does not have the effect. Valid until a slot is added.
  EffectSlot* Slot(const std::u16string& componentId, int orderNumber);

  const std::vector<EffectSlot>& Slots() const { return slots_; }

  double Pan() const { return pan_; }
  void SetPan(double pan) { pan_ = pan; }

  friend bool operator==(const EffectChain&, const EffectChain&) = default;

 private:
  std::vector<EffectSlot> slots_;
  double pan_ = 0.0;
};

/// The filters that realise the chain on a clip.
std::vector<FilterSpec> ChainFilters(const EffectChain& chain, const EffectContext& context);

/// What of the clip the effects that are switched on have to know.
EffectNeeds NeedsOf(const EffectChain& chain);

/// The names of the effects, and "Pan", that would be heard on stereo and change nothing on audio
/// of `channelCount` channels.
std::vector<std::string> UnheardEffects(const EffectChain& chain, int channelCount);

}  // namespace orvelhost
