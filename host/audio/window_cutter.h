#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// Cuts a stream into windows of one length, however it comes in blocks.
class WindowCutter {
 public:
  WindowCutter(const AudioFormat& format, double seconds)
      : size_(static_cast<std::size_t>(std::lround(seconds * format.sampleRate))) {}

  /// In frames.
  std::size_t Size() const { return size_; }
  /// How much of the window that is not whole yet has come.
  std::size_t Filled() const { return filled_; }

  /// Calls `take(begin, count)` for the frames of each window that the block is part of, and
  /// `end()` behind each window that is whole.
  template <typename Take, typename End>
  void Cut(const AudioBlock& block, const Take& take, const End& end) {
    for (std::size_t begin = 0; begin < block.FrameCount();) {
      const std::size_t count = std::min(size_ - filled_, block.FrameCount() - begin);
      take(begin, count);
      begin += count;
      filled_ += count;
      if (filled_ == size_) {
        end();
        filled_ = 0;
      }
    }
  }

  /// Calls `take(channel, samples)` for each channel's share of each window that the block is part
  /// of, and `end()` behind each window that is whole.
  template <typename Take, typename End>
  void Add(const AudioBlock& block, const Take& take, const End& end) {
    const auto takeChannels = [&](std::size_t begin, std::size_t count) {
      for (int channel = 0; channel < block.ChannelCount(); ++channel) {
        take(static_cast<std::size_t>(channel), block.Channel(channel).subspan(begin, count));
      }
    };
    Cut(block, takeChannels, end);
  }

 private:
  std::size_t size_;
  std::size_t filled_ = 0;
};

}  // namespace orvelhost
