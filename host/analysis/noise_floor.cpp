#include "host/analysis/noise_floor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

constexpr double kWindow = 0.1;      // seconds
constexpr double kSilence = -120.0;  // dBFS; below the steps of 16 bits, and far below any room
constexpr double kLoudest = 220.0;   // dBFS; the loudest sample that a reader lets through is less

}  // namespace

NoiseFloorMeter::NoiseFloorMeter(const AudioFormat& format)
    : windowSize_(static_cast<std::size_t>(std::lround(kWindow * format.sampleRate))),
      channels_(static_cast<std::size_t>(format.channelCount)),
      levels_(kSilence, kLoudest, 0.05) {}

void NoiseFloorMeter::Add(const AudioBlock& block) {
  for (std::size_t begin = 0; begin < block.FrameCount();) {
    const std::size_t count = std::min(windowSize_ - filled_, block.FrameCount() - begin);
    for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
      for (const double sample : block.Channel(static_cast<int>(channel)).subspan(begin, count)) {
        channels_[channel].value += sample;
        channels_[channel].square += sample * sample;
      }
    }
    begin += count;
    filled_ += count;
    if (filled_ == windowSize_) {
      if (const double level = WindowLevel(); level > kSilence) {
        levels_.Add(level);
      }
      std::ranges::fill(channels_, Sums());
      filled_ = 0;
    }
  }
}

double NoiseFloorMeter::WindowLevel() const {
  const double count = static_cast<double>(filled_);
  double power = 0.0;
  for (const Sums& sums : channels_) {
    const double mean = sums.value / count;
    power += std::max(0.0, sums.square / count - mean * mean);
  }
  return 10.0 * std::log10(power / static_cast<double>(channels_.size()));
}

double NoiseFloorMeter::Measure() const {
  constexpr double kQuietestPart = 0.05;
  if (!levels_.IsEmpty()) {
    return levels_.Quantile(kQuietestPart);
  }
  const double rest = filled_ > 0 ? WindowLevel() : kSilence;
  return rest > kSilence ? rest : -std::numeric_limits<double>::infinity();
}

}  // namespace orvelhost
