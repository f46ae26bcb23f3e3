#pragma once

#include <memory>
#include <optional>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// What was measured over a whole stream. Silence measures as minus infinity, and so does the
/// loudness at sample rates below 3364 Hz, for which its weighting is not made.
struct Levels {
  double loudness;       ///< integrated loudness in LUFS (EBU R 128, ITU-R BS.1770-4)
  double loudnessRange;  ///< in LU (EBU Tech 3342); 0 for less than 3 seconds
  double samplePeak;     ///< the largest sample in dBFS
  double truePeak;       ///< the largest peak between samples in dBTP (BS.1770-4, Annex 2)
  /// Energy of (L-R)/2 over that of (L+R)/2, in dB; none when the stream is not stereo.
  std::optional<double> width;
};

/// Measures a stream block by block, in memory that hardly grows with its length.
class LevelMeter {
 public:
  explicit LevelMeter(const AudioFormat& format);
  ~LevelMeter();
  LevelMeter(LevelMeter&&) noexcept;
  LevelMeter& operator=(LevelMeter&&) noexcept;

  /// Takes a block of the meter's format.
  void Add(const AudioBlock& block);

  /// What was measured so far.
  Levels Measure() const;

 private:
  class Meter;
  std::unique_ptr<Meter> meter_;
};

}  // namespace orvelhost
