#pragma once

#include <optional>
#include <vector>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// Between which levels a clip moves, pauses left out: what
/// orvel::SectionClarityConfig::ComputeDynamicsProcessorSettings takes. In dBFS, upper >= lower.
struct DynamicsLevels {
  float upper;  ///< of the louder parts
  float lower;  ///< of the quieter parts
};

/// Measures them over a stream, in memory that does not grow with its length.
class DynamicsMeter {
 public:
  explicit DynamicsMeter(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// None when there was nothing but silence.
  std::optional<DynamicsLevels> Measure() const;

 private:
  void EndWindow();

  std::size_t windowSize_;
  std::size_t filled_ = 0;
  float peak_ = 0.0f;
  std::vector<std::uint32_t> histogram_;
};

}  // namespace orvelhost
