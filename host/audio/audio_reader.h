#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// Streams the best audio track of a media file (audio or video), block by block, at the file's own
/// rate and channels. Samples that an encoder added before and after the audio are left out.
///
/// Damaged stretches in the middle are skipped; a sample that is no number, or beyond +200 dBFS, is
/// read as 0. Both are told by Notes. If rate or channels change on the way, the rest is converted
/// to those of the start.
class AudioReader {
 public:
  /// Opens the file and decodes its beginning. Throws AudioError when the file cannot be read, has
  /// no audio, or none of its audio can be decoded. Messages call it `name`, where that is given.
  explicit AudioReader(const std::filesystem::path& path, const std::filesystem::path& name = {});
  ~AudioReader();
  AudioReader(AudioReader&&) noexcept;
  AudioReader& operator=(AudioReader&&) noexcept;

  const AudioFormat& Format() const;

  /// The length in frames as the file states it, 0 when it states none. May be wrong.
  std::int64_t StatedFrameCount() const;

  /// Stores the next block, never an empty one; false at the end, with `block` left as it was.
  bool Read(AudioBlock& block);

  /// One line for each kind of trouble that was met and survived so far, each naming the file.
  std::vector<std::string> Notes() const;

 private:
  class Decoder;
  std::unique_ptr<Decoder> decoder_;
};

}  // namespace orvelhost
