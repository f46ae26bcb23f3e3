#include "host/analysis/quietest_stretch.h"

#include <algorithm>
#include <limits>

namespace orvelhost {
namespace {

constexpr std::size_t kSteps = 6;
constexpr double kStepSeconds = 0.1;
constexpr double kSilence = 1e-12;  // mean square, -120 dBFS

}  // namespace

QuietestStretch::QuietestStretch(const AudioFormat& format)
    : steps_(format, kStepSeconds),
      channelCount_(static_cast<std::size_t>(format.channelCount)),
      recent_(1, Step{std::vector<std::vector<double>>(channelCount_), 0.0}),
      quietestEnergy_(std::numeric_limits<double>::infinity()) {}

void QuietestStretch::Add(const AudioBlock& block) {
  steps_.Add(
      block,
      [this](std::size_t channel, std::span<const float> samples) {
        Step& step = recent_.back();
        for (const double sample : samples) {
          step.channels[channel].push_back(sample);
          step.energy += sample * sample;
        }
      },
      [this] { EndStep(); });
}

void QuietestStretch::EndStep() {
  const double samples = static_cast<double>(steps_.Size() * channelCount_);
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
