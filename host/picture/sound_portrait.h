#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// A stretch of a waveform. Full scale is at -1..1.
struct WaveColumn {
  float least = 0.0F;
  float greatest = 0.0F;
  double square = 0.0;     ///< the sum of the squares of the samples
  std::int64_t count = 0;  ///< how many samples there are

  static WaveColumn Of(float sample) {
    return {sample, sample, static_cast<double>(sample) * sample, 1};
  }
  void Merge(const WaveColumn& other) {
    least = std::min(least, other.least);
    greatest = std::max(greatest, other.greatest);
    square += other.square;
    count += other.count;
  }
};

/// The loudness in a stretch of time (EBU Tech 3341), in LUFS; minus infinity for silence. As on a
/// meter, a value tells of the time before it. At the beginning the windows are as long as there is
/// sound.
struct LoudnessPoint {
  double leastMomentary;  ///< over 0.4 s
  double greatestMomentary;
  double greatestShortTerm;  ///< over 3 s

  void Merge(const LoudnessPoint& other) {
    leastMomentary = std::min(leastMomentary, other.leastMomentary);
    greatestMomentary = std::max(greatestMomentary, other.greatestMomentary);
    greatestShortTerm = std::max(greatestShortTerm, other.greatestShortTerm);
  }
};

/// What of a sound lies between two frequencies, all channels together.
struct SpectrumBand {
  double frequency;  ///< its middle in Hz
  double level;      ///< the root mean square in dBFS, as everywhere: a sine of full scale has -3
};

/// How a sound looks, of any length in the same small memory. A value.
struct SoundPortrait {
  AudioFormat format;
  std::int64_t frameCount = 0;
  /// The waveforms of the channels; of more than two channels, of all together.
  std::vector<std::vector<WaveColumn>> lanes;
  std::int64_t framesPerColumn = 1;  ///< the last column may have fewer
  std::vector<LoudnessPoint> loudness;
  double secondsPerPoint = 0.1;
  std::vector<SpectrumBand> spectrum;  ///< upwards; see MeanSpectrum

  /// In seconds.
  double Duration() const { return static_cast<double>(frameCount) / format.sampleRate; }
};

}  // namespace orvelhost
