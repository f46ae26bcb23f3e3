#pragma once

#include <deque>
#include <vector>

#include "host/audio/audio_block.h"
#include "host/audio/window_cutter.h"

namespace orvelhost {

/// Keeps the quietest 0.6 s of a stream, found in steps of a tenth of a second. Stretches with
/// digital silence in them are cuts, and passed over.
class QuietestStretch {
 public:
  explicit QuietestStretch(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// One row of samples per channel. The whole stream when it is shorter than 0.6 s; without
  /// samples when there is only silence.
  std::vector<std::vector<double>> Get() const;

 private:
  struct Step {
    std::vector<std::vector<double>> channels;
    double energy = 0.0;
  };

  void EndStep();

  WindowCutter steps_;
  std::size_t channelCount_;
  std::deque<Step> recent_;  ///< the last one is being filled
  std::vector<Step> quietest_;
  double quietestEnergy_;
};

}  // namespace orvelhost
