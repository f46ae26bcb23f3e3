#pragma once

#include <cstddef>
#include <vector>

#include "host/audio/loudness_state.h"
#include "host/audio/window_cutter.h"

namespace orvelhost {

/// Measures how loud a stream would be with any gain, which is not how loud it is plus the gain:
/// what lies below the gate of -70 LUFS as it is may count once it is louder. Keeps 8 bytes for
/// each tenth of a second.
class GatedLoudness {
 public:
  explicit GatedLoudness(const AudioFormat& format);

  /// Takes a block of the format.
  void Add(const AudioBlock& block);

  /// The integrated loudness in LUFS (ITU-R BS.1770-4, Annex 1) of what came so far, made louder by
  /// `gain` (dB). Minus infinity when all of it lies below the gate, is shorter than 0.4 seconds,
  /// or has a sample rate without a weighting.
  double With(double gain) const;

  /// In dBTP, without a gain.
  double TruePeak() const;

 private:
  void EndHop();

  WindowCutter hops_;
  std::size_t hopCount_ = 0;
  bool isMeasurable_;
  LoudnessState state_;
  std::vector<double> powers_;  // of the gating blocks that are not silent; 1 is 0 LUFS
};

}  // namespace orvelhost
