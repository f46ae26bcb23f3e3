#include "host/analysis/noise_bands.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>

namespace orvelhost {
namespace {

/// As libavfilter rounds 80 Hz x 1.5^band.
constexpr NoiseBands kCentres = {80,   120,  180,  270,  410,   620,   930,  1400,
                                 2100, 3150, 4700, 7100, 10700, 16000, 24000};
const double kHalfBand = std::sqrt(1.5);

}  // namespace

NoiseBandMeter::NoiseBandMeter(int sampleRate, std::size_t length)
    : transform_(std::bit_floor(length)), window_(HannWindow(transform_.Size())) {
  const double binWidth = static_cast<double>(sampleRate) / static_cast<double>(window_.size());
  for (std::size_t band = 0; band < kCentres.size(); ++band) {
    const double lowest = kCentres[band] / kHalfBand / binWidth;
    const double highest = kCentres[band] * kHalfBand / binWidth;
    bins_[band] = {static_cast<std::size_t>(lowest),
                   std::min(window_.size() / 2, static_cast<std::size_t>(std::ceil(highest)))};
    if (band > 0 && bins_[band].first + 1 >= bins_[band].second) bins_[band] = bins_[band - 1];
  }
}

NoiseBands NoiseBandMeter::Measure(std::span<const double> samples) {
  const std::size_t count = std::min(samples.size(), window_.size());
  windowed_.resize(count);
  double weight = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    windowed_[i] = samples[i] * window_[i];
    weight += window_[i] * window_[i];
  }
  const auto spectrum = transform_.Transform(windowed_);
  NoiseBands powers{};
  for (std::size_t band = 0; band < powers.size(); ++band) {
    const auto [first, end] = bins_[band];
    for (std::size_t bin = first; bin < end; ++bin) powers[band] += std::norm(spectrum[bin]);
    powers[band] /= static_cast<double>(end - first) * std::max(weight, 1e-300);
  }
  return powers;
}

}  // namespace orvelhost
