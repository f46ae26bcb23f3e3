#pragma once

#include <span>
#include <string>
#include <vector>

#include "host/audio/filter_graph.h"

namespace orvelhost {

/// The filters that realise an effect at these parameter values (each 0..1; other values are
/// limited, a NaN or a missing value is the effect's initial one) on audio of `channelCount`
/// channels. None when the effect changes nothing or cannot act on such audio. Raises `AudioError`
/// for an effect that this host cannot run: a chain that is heard is heard whole.
///
/// Hard limiter: gain, then a look-ahead limiter (5 ms attack, 50 ms release) whose output never
/// exceeds the ceiling; below the ceiling it is gain alone. Adds no delay.
///
/// Stereo expander, stereo only. Width w scales the side signal (L-R)/2 by 3w: 0 gives equal
/// channels, 1/3 the width as it is. Centre c moves the mid signal (L+R)/2 to one side by
/// attenuating it on the other by 2c (left, above one half: 2-2c).
std::vector<FilterSpec> EffectFilters(const std::u16string& componentId,
                                      std::span<const float> normalized, int channelCount);

/// The filters that place the clip at `pan`, -1 (left) to 1 (right). The channel away from it is
/// attenuated linearly, to nothing at the end, and the other kept: 0 dB in the centre, nowhere
/// louder. Mono becomes stereo. None at 0, and for more than two channels.
std::vector<FilterSpec> PanFilters(double pan, int channelCount);

}  // namespace orvelhost
