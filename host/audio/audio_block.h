#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orvelhost {

/// What a stream of samples looks like.
struct AudioFormat {
  int sampleRate = 0;    ///< samples per second and channel, kMinSampleRate..kMaxSampleRate
  int channelCount = 0;  ///< 1..kMaxChannels
  /// The speakers as bits, numbered as in the channel mask of a WAV file; 0 when they are unknown.
  std::uint64_t speakers = 0;

  /// Look-ahead times shrink to nothing at rates below these, and no converter runs above.
  static constexpr int kMinSampleRate = 1000;
  static constexpr int kMaxSampleRate = 768000;
  static constexpr int kMaxChannels = 64;

  friend bool operator==(const AudioFormat&, const AudioFormat&) = default;
};

/// A stretch of audio: one row of samples per channel, full scale at -1..1. A value.
class AudioBlock {
 public:
  AudioBlock() = default;

  /// `frameCount` samples of silence per channel.
  AudioBlock(const AudioFormat& format, std::size_t frameCount)
      : format_(format),
        frameCount_(frameCount),
        samples_(static_cast<std::size_t>(format.channelCount) * frameCount) {}

  const AudioFormat& Format() const { return format_; }
  int ChannelCount() const { return format_.channelCount; }
  std::size_t FrameCount() const { return frameCount_; }

  std::span<float> Channel(int index) { return {samples_.data() + Offset(index), frameCount_}; }
  std::span<const float> Channel(int index) const {
    return {samples_.data() + Offset(index), frameCount_};
  }

  /// A copy of `count` samples per channel, from `begin` on; all of them must be there.
  AudioBlock Part(std::size_t begin, std::size_t count) const {
    AudioBlock part(format_, count);
    for (int channel = 0; channel < ChannelCount(); ++channel) {
      std::ranges::copy(Channel(channel).subspan(begin, count), part.Channel(channel).begin());
    }
    return part;
  }

 private:
  std::size_t Offset(int channel) const { return static_cast<std::size_t>(channel) * frameCount_; }

  AudioFormat format_;
  std::size_t frameCount_ = 0;
  std::vector<float> samples_;
};

}  // namespace orvelhost
