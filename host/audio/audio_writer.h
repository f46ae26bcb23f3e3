#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// How the name ends, with the point, in small letters.
std::string EndingOf(const std::filesystem::path& file);

/// Writes a WAV or FLAC file, by the name's ending, block by block.
///
/// WAV keeps the samples as they are, 32 bit float, also beyond full scale; past 4 GiB the file
/// becomes RF64. FLAC holds 24 bit, limited to full scale and rounded towards zero, so that no
/// stored sample is larger than the one given.
class AudioWriter {
 public:
  /// Begins the file. Throws AudioError when the name ends otherwise, the format does not fit the
  /// kind of file, or its folder cannot be written to.
  AudioWriter(const std::filesystem::path& path, const AudioFormat& format);
  /// Without a Commit nothing is left behind, and a file of that name stays as it was.
  ~AudioWriter();
  AudioWriter(AudioWriter&&) noexcept;
  AudioWriter& operator=(AudioWriter&&) noexcept;

  /// Appends a block of the file's format. Throws AudioError when the device is full or fails.
  void Write(const AudioBlock& block);

  /// How many of the samples so far lay beyond full scale, where the file ends and they did not.
  std::int64_t CutOffCount() const;

  /// Completes the file and gives it its name, in the place of an older one if `replace` is set.
  /// Throws AudioError.
  void Commit(bool replace = true);

  /// Tells whether the name ends in one of the supported ways, in either case of letters.
  static bool IsSupported(const std::filesystem::path& path);

 private:
  class Encoder;
  std::unique_ptr<Encoder> encoder_;
};

}  // namespace orvelhost
