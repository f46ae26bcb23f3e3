#pragma once

#include <vector>

#include "host/picture/loudness_course.h"
#include "host/picture/mean_spectrum.h"
#include "host/picture/merging_row.h"
#include "host/picture/sound_portrait.h"

namespace orvelhost {

/// Gathers the portrait of a stream, block by block.
class PortraitCollector {
 public:
  explicit PortraitCollector(const AudioFormat& format);

  /// Takes a block of the format.
  void Add(const AudioBlock& block);

  /// Ends the stream; nothing may be added behind.
  SoundPortrait Finish();

 private:
  AudioFormat format_;
  std::int64_t frameCount_ = 0;
  std::vector<MergingRow<WaveColumn>> lanes_;
  LoudnessCourse loudness_;
  MeanSpectrum spectrum_;
};

}  // namespace orvelhost
