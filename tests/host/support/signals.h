#pragma once

#include <functional>
#include <vector>

namespace orvelhost::testing {

/// The sample of a channel at a time in seconds.
using Signal = std::function<double(double time, int channel)>;

/// `amplitude` at `frequency` Hz; each further channel lags by an eighth of a turn.
Signal Sine(double amplitude, double frequency = 997.0);
/// Even noise up to `amplitude`, the same at each run and different in each channel.
Signal Noise(double amplitude);

Signal Sum(std::vector<Signal> signals);

/// `signal` from `begin` to `end` seconds, silence around it.
Signal During(double begin, double end, Signal signal);

/// Tones at the multiples of `base` Hz with the given amplitudes, of arbitrary but fixed phases.
Signal Harmonics(double base, const std::vector<double>& amplitudes);

/// A short burst on each beat, from time 0 on.
Signal Clicks(double beatsPerMinute);

/// Music in 4/4 at 120 beats per minute: four chords, one a bar, a drum on each beat and a deep one
/// on each bar. It repeats after kChordLoop seconds, sample by sample where that is a whole number
/// of frames.
Signal ChordLoop();
inline constexpr double kChordLoop = 8.0;

}  // namespace orvelhost::testing
