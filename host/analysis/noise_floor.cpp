#include "host/analysis/noise_floor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

constexpr double kWindow = 0.1;     // seconds
constexpr double kLoudest = 220.0;  // dBFS; the loudest sample that a reader lets through is less

}  // namespace

NoiseFloorMeter::NoiseFloorMeter(const AudioFormat& format)
    : windows_(format, kWindow),
      channels_(static_cast<std::size_t>(format.channelCount)),
      levels_(kDigitalSilence, kLoudest, 0.05) {}

void NoiseFloorMeter::Add(const AudioBlock& block) {
  windows_.Add(
      block,
      [this](std::size_t channel, std::span<const float> samples) {
        for (const double sample : samples) {
          channels_[channel].value += sample;
          channels_[channel].square += sample * sample;
        }
      },
      [this] {
        if (const double level = WindowLevel(windows_.Size()); level > kDigitalSilence)
          levels_.Add(level);
        std::ranges::fill(channels_, Sums());
      });
}

double NoiseFloorMeter::WindowLevel(std::size_t frames) const {
  const double count = static_cast<double>(frames);
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
  const double rest = windows_.Filled() > 0 ? WindowLevel(windows_.Filled()) : kDigitalSilence;
  return rest > kDigitalSilence ? rest : -std::numeric_limits<double>::infinity();
}

}  // namespace orvelhost
