#include "host/analysis/quietest_stretch.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

constexpr std::size_t kSteps = 6;
constexpr double kStepSeconds = 0.1;
constexpr double kSilence = 1e-12;  // mean square, -120 dBFS

}  // namespace

QuietestStretch::QuietestStretch(const AudioFormat& format)
    : stepSize_(static_cast<std::size_t>(std::lround(kStepSeconds * format.sampleRate))),
      channelCount_(static_cast<std::size_t>(format.channelCount)),
      recent_(1, Step{std::vector<std::vector<double>>(channelCount_), 0.0}),
      quietestEnergy_(std::numeric_limits<double>::infinity()) {}

void QuietestStretch::Add(const AudioBlock& block) {
  for (std::size_t begin = 0; begin < block.FrameCount();) {
    Step& step = recent_.back();
    const std::size_t count =
        std::min(stepSize_ - step.channels.front().size(), block.FrameCount() - begin);
    for (std::size_t channel = 0; channel < channelCount_; ++channel) {
      for (const double sample : block.Channel(static_cast<int>(channel)).subspan(begin, count)) {
        step.channels[channel].push_back(sample);
        step.energy += sample * sample;
      }
    }
    begin += count;
    if (step.channels.front().size() == stepSize_) {
      EndStep();
    }
  }
}

void QuietestStretch::EndStep() {
  const double samples = static_cast<double>(stepSize_ * channelCount_);
  if (recent_.back().energy < kSilence * samples) {
    recent_.clear();
  }
  if (recent_.size() == kSteps) {
    double energy = 0.0;
    for (const Step& step : recent_) {
      energy += step.energy;
    }
    if (energy < quietestEnergy_) {
      quietestEnergy_ = energy;
      quietest_.assign(recent_.begin(), recent_.end());
    }
    recent_.pop_front();
  }
  recent_.push_back({std::vector<std::vector<double>>(channelCount_), 0.0});
}

std::vector<std::vector<double>> QuietestStretch::Get() const {
  std::vector<std::vector<double>> channels(channelCount_);
  const auto append = [&](const auto& steps) {
    for (const Step& step : steps) {
      for (std::size_t channel = 0; channel < channelCount_; ++channel) {
        std::ranges::copy(step.channels[channel], std::back_inserter(channels[channel]));
      }
    }
  };
  quietest_.empty() ? append(recent_) : append(quietest_);
  return channels;
}

}  // namespace orvelhost
