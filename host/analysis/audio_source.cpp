#include "host/analysis/audio_source.h"

#include <algorithm>
#include <utility>

namespace orvelhost {
namespace {

class BlockSource : public AudioSource {
 public:
  explicit BlockSource(std::shared_ptr<const AudioBlock> audio) : audio_(std::move(audio)) {}

  const AudioFormat& Format() const override { return audio_->Format(); }
  std::int64_t StatedFrameCount() const override {
    return static_cast<std::int64_t>(audio_->FrameCount());
  }

  bool Read(AudioBlock& block) override {
    constexpr std::size_t kPiece = 4096;
    const std::size_t count = std::min(kPiece, audio_->FrameCount() - position_);
    if (count == 0) {
      return false;
    }
    block = audio_->Part(position_, count);
    position_ += count;
    return true;
  }

 private:
  std::shared_ptr<const AudioBlock> audio_;
  std::size_t position_ = 0;
};

}  // namespace

AudioOpener OpenerOf(const std::filesystem::path& path, const std::filesystem::path& name) {
  return [path, name] { return std::make_unique<FileSource>(path, name); };
}

AudioOpener OpenerOf(AudioBlock audio) {
  return [shared = std::make_shared<const AudioBlock>(std::move(audio))] {
    return std::make_unique<BlockSource>(shared);
  };
}

}  // namespace orvelhost
