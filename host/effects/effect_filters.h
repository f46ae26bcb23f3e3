#pragma once

#include <span>
#include <string>
#include <vector>

#include "host/audio/filter_graph.h"
#include "host/effects/effect_context.h"

namespace orvelhost {

/// The filters that realise an effect at these parameter values (each 0..1; other values are
/// limited, a NaN or a missing value is the effect's initial one) on a clip. None when the effect
/// changes nothing or cannot act on such audio. Raises `AudioError` for an effect that this host
/// cannot run: a chain that is heard is heard whole. What each effect does stands in
/// realisations.h.
std::vector<FilterSpec> EffectFilters(const std::u16string& componentId,
                                      std::span<const float> normalized,
                                      const EffectContext& context);

/// The filters that place the clip at `pan`, -1 (left) to 1 (right). The channel away from it is
/// attenuated linearly, to nothing at the end, and the other kept: 0 dB in the centre, nowhere
/// louder. Mono becomes stereo. None at 0, and for more than two channels.
std::vector<FilterSpec> PanFilters(double pan, int channelCount);

}  // namespace orvelhost
