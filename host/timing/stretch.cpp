#include "host/timing/stretch.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <rubberband/RubberBandStretcher.h>

namespace orvelhost {
namespace {

using RubberBand::RubberBandStretcher;

/// Rows of samples from `begin` on, as the library takes them.
std::vector<const float*> RowsOf(const AudioBlock& block, std::size_t begin) {
  std::vector<const float*> rows;
  rows.reserve(static_cast<std::size_t>(block.ChannelCount()));
  for (int channel = 0; channel < block.ChannelCount(); ++channel) {
    rows.push_back(block.Channel(channel).subspan(begin).data());
  }
  return rows;
}

class StretchedSource : public AudioSource {
 public:
  StretchedSource(std::unique_ptr<AudioSource> input, std::int64_t inputFrameCount,
                  std::int64_t frameCount)
      : input_(std::move(input)),
        format_(input_->Format()),
        inputLeft_(inputFrameCount),
        total_(frameCount),
        left_(frameCount),
        stretcher_(static_cast<std::size_t>(format_.sampleRate),
                   static_cast<std::size_t>(format_.channelCount),
                   RubberBandStretcher::OptionProcessOffline |
                       RubberBandStretcher::OptionEngineFiner |
                       RubberBandStretcher::OptionChannelsTogether |
                       RubberBandStretcher::OptionThreadingNever,
                   static_cast<double>(std::max<std::int64_t>(1, frameCount)) /
                       static_cast<double>(std::max<std::int64_t>(1, inputFrameCount))) {
    stretcher_.setExpectedInputDuration(static_cast<std::size_t>(inputFrameCount));
    stretcher_.setMaxProcessSize(kPiece);
  }

  const AudioFormat& Format() const override { return format_; }
  std::int64_t StatedFrameCount() const override { return total_; }

  bool Read(AudioBlock& block) override {
    if (left_ == 0) {
      return false;
    }
    while (!fed_ && stretcher_.available() == 0) {
      Feed();
    }
    const int available = stretcher_.available();
    // The library's own length may differ from the promised one by a few samples.
    const std::size_t count = static_cast<std::size_t>(
        std::min<std::int64_t>(left_, available > 0 ? available : std::int64_t{kPiece}));
    AudioBlock made(format_, count);
    if (available > 0) {
      std::vector<float*> rows;
      rows.reserve(static_cast<std::size_t>(format_.channelCount));
      for (int channel = 0; channel < format_.channelCount; ++channel) {
        rows.push_back(made.Channel(channel).data());
      }
      stretcher_.retrieve(rows.data(), count);
    }
    left_ -= static_cast<std::int64_t>(count);
    block = std::move(made);
    return true;
  }

 private:
  static constexpr std::size_t kPiece = 4096;

  /// Hands the next piece of the input to the library, and silence where the input ended too early.
  void Feed() {
    if (position_ == pending_.FrameCount() && inputLeft_ > 0) {
      position_ = 0;
      if (!input_->Read(pending_)) {
        pending_ = AudioBlock(format_, kPiece);
      }
    }
    const std::size_t count = static_cast<std::size_t>(
        std::min<std::int64_t>({inputLeft_, std::int64_t{kPiece},
                                static_cast<std::int64_t>(pending_.FrameCount() - position_)}));
    const std::vector<const float*> rows = RowsOf(pending_, position_);
    position_ += count;
    inputLeft_ -= static_cast<std::int64_t>(count);
    fed_ = inputLeft_ == 0;
    stretcher_.process(rows.data(), count, fed_);
  }

  std::unique_ptr<AudioSource> input_;
  AudioFormat format_;
  AudioBlock pending_;
  std::size_t position_ = 0;
  std::int64_t inputLeft_;
  bool fed_ = false;
  std::int64_t total_;
  std::int64_t left_;
  RubberBandStretcher stretcher_;
};

}  // namespace

DurationRange StretchRange(double duration) {
  constexpr double kDay = 86400.0;
  return {std::min(kDay, duration / 4), std::min(kDay, duration * 4)};
}

std::unique_ptr<AudioSource> Stretch(std::unique_ptr<AudioSource> input,
                                     std::int64_t inputFrameCount, std::int64_t frameCount) {
  if (inputFrameCount == frameCount) {
    return input;
  }
  RubberBandStretcher::setDefaultDebugLevel(-1);  // or it tells the terminal of unusual rates
  return std::make_unique<StretchedSource>(std::move(input), inputFrameCount, frameCount);
}

}  // namespace orvelhost
