#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <ebur128.h>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// The state of libebur128 with an owner, its channels weighed by their speakers.
class LoudnessState {
 public:
  /// `mode` is a sum of EBUR128_MODE_..., what is to be measured.
  LoudnessState(const AudioFormat& format, int mode);

  /// Takes a block of the format, or `count` of its frames from `begin` on.
  void Add(const AudioBlock& block) { Add(block, 0, block.FrameCount()); }
  void Add(const AudioBlock& block, std::size_t begin, std::size_t count);

  /// Tells whether the weighting is made for the sample rate; a loudness means nothing otherwise.
  static bool IsMeasurable(const AudioFormat& format);

  /// The greatest peak of all channels, in dB: `measure` is ebur128_sample_peak or
  /// ebur128_true_peak.
  double Peak(int (*measure)(ebur128_state*, unsigned, double*)) const;

  /// For the measuring functions, which want it mutable and leave it as it is.
  ebur128_state* Get() const { return state_.get(); }

 private:
  struct Free {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
  };

  AudioFormat format_;
  std::unique_ptr<ebur128_state, Free> state_;
  std::vector<float> interleaved_;
};

}  // namespace orvelhost
