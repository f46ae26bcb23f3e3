#pragma once

#include <memory>
#include <optional>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// What the mains left in a recording.
struct Hum {
  double frequency;  ///< the base frequency in Hz, near 50 or 60; the harmonics are its multiples
  double level;      ///< of all harmonics together, root mean square in dBFS
};

/// Looks for hum in a stream: a tone near 50 or 60 Hz, with harmonics or without, that goes on
/// through the whole stream. Tones of music and voices end, move, or stand elsewhere.
class HumFinder {
 public:
  explicit HumFinder(const AudioFormat& format);
  ~HumFinder();
  HumFinder(HumFinder&&) noexcept;
  HumFinder& operator=(HumFinder&&) noexcept;

  void Add(const AudioBlock& block);

  /// The hum in what was added so far; none for less than two seconds.
  std::optional<Hum> Find() const;

 private:
  class Finder;
  std::unique_ptr<Finder> finder_;
};

}  // namespace orvelhost
