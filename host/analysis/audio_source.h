#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/audio/audio_block.h"
#include "host/audio/audio_reader.h"

namespace orvelhost {

/// Audio that is pulled block by block, so that its length costs no memory.
class AudioSource {
 public:
  virtual ~AudioSource() = default;

  virtual const AudioFormat& Format() const = 0;

  /// How many frames there will be, 0 when that is not known. May be wrong; good for progress only.
  virtual std::int64_t StatedFrameCount() const = 0;

  /// Stores the next block, never an empty one; false at the end, with `block` left as it was.
  virtual bool Read(AudioBlock& block) = 0;
};

/// Begins the same audio anew, for work that needs it more than once.
using AudioOpener = std::function<std::unique_ptr<AudioSource>()>;

/// The audio of a media file.
class FileSource : public AudioSource {
 public:
  /// As AudioReader, which throws AudioError.
  explicit FileSource(const std::filesystem::path& path, const std::filesystem::path& name = {})
      : reader_(path, name) {}

  const AudioFormat& Format() const override { return reader_.Format(); }
  std::int64_t StatedFrameCount() const override { return reader_.StatedFrameCount(); }
  bool Read(AudioBlock& block) override { return reader_.Read(block); }
  std::vector<std::string> Notes() const { return reader_.Notes(); }

 private:
  AudioReader reader_;
};

AudioOpener OpenerOf(const std::filesystem::path& path, const std::filesystem::path& name = {});

/// Of audio that is in memory. The sources share one copy of it.
AudioOpener OpenerOf(AudioBlock audio);

}  // namespace orvelhost
