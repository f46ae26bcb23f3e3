#pragma once

#include "host/analysis/audio_source.h"

namespace orvelhost {

/// Reads a clip from any frame on. Going forwards reads on; going backwards begins the clip anew,
/// which costs the decoding of all that lies ahead of the place.
class SeekingReader {
 public:
  explicit SeekingReader(AudioOpener open) : open_(std::move(open)), source_(open_()) {}

  const AudioFormat& Format() const { return source_->Format(); }

  /// `count` frames from `begin` on; silence for those outside the clip.
  AudioBlock Read(std::int64_t begin, std::size_t count);

 private:
  /// Makes `block_` the one that holds `frame`; false beyond the end.
  bool Load(std::int64_t frame);

  AudioOpener open_;
  std::unique_ptr<AudioSource> source_;
  AudioBlock block_;
  std::int64_t blockBegin_ = 0;
};

}  // namespace orvelhost
