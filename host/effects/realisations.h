#pragma once

#include <span>
#include <vector>

#include "host/audio/filter_graph.h"
#include "host/effects/effect_context.h"

namespace orvelhost {

/// The values of an effect's parameters on their physical scales, one for each of its rows in the
/// catalogue and inside that row's range.
using EffectValues = std::span<const double>;

// How each effect becomes filters. None when it changes nothing or cannot act on such audio.

/// Gain, then a look-ahead limiter (5 ms attack, 50 ms release) whose output never exceeds the
/// ceiling; below the ceiling it is gain alone.
std::vector<FilterSpec> HardLimiter(EffectValues values, const EffectContext& context);

/// Stereo only. Width w scales the side signal (L-R)/2 by 3w: 0 gives equal channels, 1/3 the width
/// as it is. Centre c moves the mid signal (L+R)/2 to one side by attenuating it on the other by 2c
/// (left, above one half: 2-2c).
std::vector<FilterSpec> StereoExpander(EffectValues values, const EffectContext& context);

/// Takes up to `Reduction` dB off what lies at or below the clip's measured noise, band by band,
/// and nothing without such a measurement. Tuning and threshold both move the measured noise up, in
/// dB. Noisiness, decay rate, preservation, transform size and fine estimate have no counterpart in
/// the filter, which adapts these by itself.
std::vector<FilterSpec> NoiseReduction(EffectValues values, const EffectContext& context);

/// Notches at the base frequency and its harmonics, as deep as `Hum level` says. Where the clip's
/// measured hum lies within 2 % of the base frequency, it stands at the measured one.
std::vector<FilterSpec> DeHummer(EffectValues values, const EffectContext& context);

/// Turns a band down while its own level is above the threshold, by 1 - 1/ratio of the excess and
/// at most by the limit; without split band, nearly all frequencies follow. Look-ahead, knee and
/// link have no counterpart in the filter.
std::vector<FilterSpec> DeEsser(EffectValues values, const EffectContext& context);

/// The gain curve through the points. The views belong to a panel.
std::vector<FilterSpec> FftFilter(EffectValues values, const EffectContext& context);

/// The level curve through the points, applied to the envelope of each channel; the times of
/// detector and gain add up. Detector RMS, low cut, high cut and link have no counterpart in the
/// filter.
std::vector<FilterSpec> Dynamics(EffectValues values, const EffectContext& context);

/// A smooth curve through the ten gains, level beyond the outer bands.
std::vector<FilterSpec> GraphicEqualizer(EffectValues values, const EffectContext& context);

/// A fixed tone curve for a low voice, a high voice, or music that a voice stands before.
std::vector<FilterSpec> VocalEnhancer(EffectValues values, const EffectContext& context);

/// Dry sound, early reflections and a tail, each as loud as their share says; dry and wet at 100 %
/// have about equal energy. Mono and stereo only.
std::vector<FilterSpec> StudioReverb(EffectValues values, const EffectContext& context);

}  // namespace orvelhost
