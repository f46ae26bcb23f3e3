#include "host/audio/live_chain.h"

#include <algorithm>
#include <cmath>

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

constexpr double kFade = 0.02;     // seconds
constexpr double kPreRoll = 0.25;  // seconds, and what the chain's filters hold of the sound
constexpr double kHistory = 32.0;  // seconds: the longest tail is the reverb's, of 30.2

}  // namespace

LiveChain::LiveChain(const AudioFormat& format, const std::vector<FilterSpec>& filters)
    : format_(format), fade_(static_cast<std::size_t>(std::lround(kFade * format.sampleRate))) {
  FilterGraph graph(format, filters);
  const auto channels = static_cast<std::size_t>(graph.OutputFormat().channelCount);
  voices_.push_back({std::move(graph), std::vector<std::deque<float>>(channels), fade_, 0});
}

void LiveChain::Change(const std::vector<FilterSpec>& filters) {
  FilterGraph graph(format_, filters);
  if (graph.OutputFormat().channelCount != OutputFormat().channelCount) {
    throw AudioError("cannot change the number of channels while audio runs");
  }
  const std::int64_t preRoll =
      std::llround(kPreRoll * format_.sampleRate) + DelayOf(filters) + TailOf(filters);
  std::int64_t place = historyBegin_;
  std::int64_t begin = -1;
  for (const AudioBlock& block : history_) {
    const auto count = static_cast<std::int64_t>(block.FrameCount());
    const std::int64_t skipped = std::clamp<std::int64_t>(pulled_ - preRoll - place, 0, count);
    if (skipped < count) {
      begin = begin < 0 ? place + skipped : begin;
      graph.Push(
          block.Part(static_cast<std::size_t>(skipped), static_cast<std::size_t>(count - skipped)));
    }
    place += count;
  }
  if (finished_) {
    graph.Finish();
  }
  voices_.push_back({std::move(graph), std::vector<std::deque<float>>(voices_.front().ready.size()),
                     0, begin < 0 ? 0 : pulled_ - begin});
}

void LiveChain::Push(const AudioBlock& block) {
  for (Voice& voice : voices_) {
    voice.graph.Push(block);
  }
  Remember(block);
}

void LiveChain::Finish() {
  finished_ = true;
  for (Voice& voice : voices_) {
    voice.graph.Finish();
  }
}

bool LiveChain::Pull(AudioBlock& block) {
  std::size_t count = 0;
  for (Voice& voice : voices_) {
    Drain(voice);
    const std::size_t ready = voice.ready.front().size();
    // In the end the shorter ones are silent for as long as the others go on.
    count = &voice == &voices_.front() ? ready
            : finished_                ? std::max(count, ready)
                                       : std::min(count, ready);
  }
  for (const Voice& voice : voices_) {
    if (voice.fadeDone < fade_) {
      count = std::min(count, fade_ - voice.fadeDone);
    }
  }
  if (count == 0) {
    return false;
  }
  block = AudioBlock(OutputFormat(), count);
  for (Voice& voice : voices_) {
    for (std::size_t channel = 0; channel < voice.ready.size(); ++channel) {
      std::deque<float>& row = voice.ready[channel];
      const std::span<float> mixed = block.Channel(static_cast<int>(channel));
      const std::size_t size = std::min(count, row.size());
      for (std::size_t frame = 0; frame < count; ++frame) {
        const float sample = frame < size ? row[frame] : 0.0f;
        const float share =
            std::min(1.0f, static_cast<float>(voice.fadeDone + frame) / static_cast<float>(fade_));
        mixed[frame] += share * (sample - mixed[frame]);
      }
      row.erase(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(size));
    }
    voice.fadeDone = std::min(fade_, voice.fadeDone + count);
  }
  pulled_ += static_cast<std::int64_t>(count);
  while (voices_.size() > 1 && voices_[1].fadeDone == fade_) {
    voices_.erase(voices_.begin());
  }
  return true;
}

void LiveChain::Drain(Voice& voice) {
  AudioBlock block;
  while (voice.graph.Pull(block)) {
    const auto skipped = std::min(voice.early, static_cast<std::int64_t>(block.FrameCount()));
    voice.early -= skipped;
    for (std::size_t channel = 0; channel < voice.ready.size(); ++channel) {
      std::ranges::copy(
          block.Channel(static_cast<int>(channel)).subspan(static_cast<std::size_t>(skipped)),
          std::back_inserter(voice.ready[channel]));
    }
  }
}

void LiveChain::Remember(const AudioBlock& block) {
  history_.push_back(block);
  const std::int64_t oldest = pulled_ - std::llround(kHistory * format_.sampleRate);
  while (historyBegin_ + static_cast<std::int64_t>(history_.front().FrameCount()) < oldest) {
    historyBegin_ += static_cast<std::int64_t>(history_.front().FrameCount());
    history_.pop_front();
  }
}

}  // namespace orvelhost
