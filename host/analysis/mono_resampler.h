#pragma once

#include <span>
#include <vector>

#include "host/audio/ffmpeg.h"

namespace orvelhost {

/// Brings one channel of a stream to another sample rate.
class MonoResampler {
 public:
  MonoResampler(int fromRate, int toRate);

  /// Appends to `out` what `samples` bring about. The last few milliseconds stay inside.
  void Add(std::span<const float> samples, std::vector<double>& out);

 private:
  ffmpeg::ResamplerPtr resampler_;
};

}  // namespace orvelhost
