#pragma once

#include <vector>

#include "host/analysis/level_histogram.h"
#include "host/audio/audio_block.h"
#include "host/audio/window_cutter.h"

namespace orvelhost {

/// In dBFS; below the steps of 16 bits, and far below any room. A tenth of a second that is quieter
/// is digital silence: a cut, and no sound of a recording.
inline constexpr double kDigitalSilence = -120.0;

/// Measures how quiet a stream is where it is quietest.
class NoiseFloorMeter {
 public:
  explicit NoiseFloorMeter(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// The root mean square, in dBFS over all channels and without offset, that a twentieth of all
  /// stretches of a tenth of a second stay below. Stretches of digital silence are cuts and count
  /// for nothing; minus infinity when there is nothing else.
  double Measure() const;

 private:
  struct Sums {
    double value = 0.0;
    double square = 0.0;
  };

  /// Of so many frames.
  double WindowLevel(std::size_t count) const;

  WindowCutter windows_;
  std::vector<Sums> channels_;
  LevelHistogram levels_;
};

}  // namespace orvelhost
