#pragma once

#include <functional>
#include <stdexcept>

#include "host/analysis/audio_source.h"

namespace orvelhost {

/// Is told how far a piece of work has come, 0..1, or -1 when that is not known. The work ends with
/// a Cancelled when it gives false. May be empty. It is called on the thread that does the work.
using Progress = std::function<bool(double done)>;

/// Thrown by work whose progress function asked for its end. Nothing is left behind.
class Cancelled : public std::runtime_error {
 public:
  Cancelled() : std::runtime_error("cancelled") {}
};

/// Reads a source and tells how far that has come.
class ProgressingReader {
 public:
  /// Both must outlive the reader.
  ProgressingReader(AudioSource& source, const Progress& progress)
      : source_(source), progress_(progress) {}

  /// As the source's own. Throws Cancelled.
  bool Read(AudioBlock& block);

  /// What was read so far.
  std::int64_t FrameCount() const { return frameCount_; }

 private:
  AudioSource& source_;
  const Progress& progress_;
  std::int64_t frameCount_ = 0;
};

/// The same progress seen from inside one of several steps, which takes the whole from `begin` to
/// `end` (0..1). `progress` must outlive it.
Progress StepOf(const Progress& progress, double begin, double end);

}  // namespace orvelhost
