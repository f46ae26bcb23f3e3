#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "host/analysis/spectrum.h"

namespace orvelhost {

/// A figure for each of the bands in which libavfilter's afftdn knows noise, lowest first.
using NoiseBands = std::array<double, 15>;

/// Measures windows of a sound in these bands.
class NoiseBandMeter {
 public:
  /// For windows of `length` samples, of which the greatest power of two is looked at.
  NoiseBandMeter(int sampleRate, std::size_t length);

  /// The mean square that white noise of each band's density would have. Fewer samples will do; a
  /// band beyond what the sample rate can carry has the figure of the one below.
  NoiseBands Measure(std::span<const double> samples);

 private:
  Spectrum transform_;
  std::vector<double> window_;
  std::vector<double> windowed_;
  std::array<std::pair<std::size_t, std::size_t>, std::tuple_size_v<NoiseBands>> bins_;
};

}  // namespace orvelhost
