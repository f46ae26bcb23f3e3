#pragma once

#include "host/audio/loudness_state.h"
#include "host/audio/window_cutter.h"
#include "host/picture/merging_row.h"
#include "host/picture/sound_portrait.h"

namespace orvelhost {

/// Measures loudness ten times a second.
class LoudnessCourse {
 public:
  explicit LoudnessCourse(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// Those so far, a tenth of a second or a multiple of it each; none where the sample rate is too
  /// low for the weighting.
  const std::vector<LoudnessPoint>& Points() const { return points_.Cells(); }
  double SecondsPerPoint() const;

 private:
  void Measure();

  double sampleRate_;
  WindowCutter hops_;
  bool isMeasurable_;
  unsigned long elapsed_ = 0;  // ms
  LoudnessState state_;
  MergingRow<LoudnessPoint> points_;
};

}  // namespace orvelhost
