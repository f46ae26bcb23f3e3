#pragma once

#include <optional>

#include "host/analysis/level_histogram.h"
#include "host/audio/audio_block.h"
#include "host/audio/window_cutter.h"

namespace orvelhost {

/// Between which levels a clip moves where it is not in a pause: what
/// orvel::SectionClarityConfig::ComputeDynamicsProcessorSettings takes. Peaks of windows of 50 ms,
/// in dBFS; upper >= lower.
struct DynamicsLevels {
  float upper;  ///< a twentieth is louder
  float lower;  ///< a fifth is quieter
};

/// Measures them over a stream, in memory that does not grow with its length.
class DynamicsMeter {
 public:
  explicit DynamicsMeter(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// None when there was nothing but silence.
  std::optional<DynamicsLevels> Measure() const;

 private:
  WindowCutter windows_;
  float peak_ = 0.0f;
  LevelHistogram levels_;
};

}  // namespace orvelhost
