#include "host/analysis/noise_profile.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <cstdio>
#include <functional>
#include <numeric>
#include <span>
#include <vector>

#include "host/analysis/filtered_source.h"
#include "host/analysis/quietest_stretch.h"
#include "host/analysis/spectrum.h"

namespace orvelhost {
namespace {

using Bands = std::array<double, NoiseProfile::kBandCount>;

/// The filter takes noise as lying 3 dB below the mean square of white noise of its density, and
/// what it compares with the profile swings by some dB around that. From here on it takes away all
/// that was asked, within 0.3 dB, and still leaves speech alone.
constexpr double kProfileAboveNoise = 5.0;  // dB

/// As libavfilter rounds 80 Hz x 1.5^band.
constexpr std::array<double, NoiseProfile::kBandCount> kCentres = {
    80, 120, 180, 270, 410, 620, 930, 1400, 2100, 3150, 4700, 7100, 10700, 16000, 24000};
const double kHalfBand = std::sqrt(1.5);

std::vector<FilterSpec> WithoutRumbleAndHum(const std::optional<Hum>& hum) {
  std::vector<FilterSpec> filters(2, {"highpass", {{"frequency", "40"}, {"precision", "f64"}}});
  constexpr int kHarmonics = 8;
  for (int harmonic = 1; hum && harmonic <= kHarmonics; ++harmonic) {
    filters.push_back({"bandreject",
                       {{"frequency", std::to_string(hum->frequency * harmonic)},
                        {"width_type", "h"},
                        {"width", "4"},
                        {"precision", "f64"}}});
  }
  return filters;
}

/// The mean power of each bin, one row per channel.
std::vector<std::vector<double>> MeanPowers(const std::vector<std::vector<double>>& channels,
                                            std::size_t size) {
  Spectrum transform(size);
  const std::vector<double> window = HannWindow(size);
  std::vector<double> windowed(size);
  std::vector<std::vector<double>> rows;
  for (const std::vector<double>& samples : channels) {
    std::vector<double> powers(size / 2 + 1);
    std::size_t begin = 0;
    int count = 0;
    do {
      const std::size_t length = std::min(size, samples.size() - begin);
      std::ranges::fill(windowed, 0.0);
      std::ranges::transform(std::span(samples).subspan(begin, length), window, windowed.begin(),
                             std::multiplies<>());
      const auto spectrum = transform.Transform(windowed);
      for (std::size_t bin = 0; bin < powers.size(); ++bin) {
        powers[bin] += std::norm(spectrum[bin]);
      }
      ++count;
      begin += size / 2;
    } while (begin + size <= samples.size());
    for (double& power : powers) {
      power /= count;
    }
    rows.push_back(powers);
  }
  return rows;
}

/// In dB, the mean square that white noise of each band's density would have; of several channels
/// that of the noisiest.
Bands BandLevels(const std::vector<std::vector<double>>& channels, int sampleRate) {
  constexpr double kWindow = 0.06;  // seconds at least
  const std::size_t size = std::bit_ceil(static_cast<std::size_t>(kWindow * sampleRate));
  constexpr double kMeanSquareOfWindow = 3.0 / 8.0;
  const double scale = 1.0 / (kMeanSquareOfWindow * static_cast<double>(size));
  const double binWidth = static_cast<double>(sampleRate) / static_cast<double>(size);
  const auto rows = MeanPowers(channels, size);

  Bands levels{};
  for (std::size_t band = 0; band < levels.size(); ++band) {
    const std::size_t first = static_cast<std::size_t>(kCentres[band] / kHalfBand / binWidth);
    const std::size_t end = std::min(
        size / 2, static_cast<std::size_t>(std::ceil(kCentres[band] * kHalfBand / binWidth)));
    if (band > 0 && first + 1 >= end) {
      levels[band] = levels[band - 1];  // beyond what the sample rate can carry
      continue;
    }
    double loudest = 0.0;
    for (const std::vector<double>& powers : rows) {
      const auto bins = std::span(powers).subspan(first, end - first);
      loudest = std::max(loudest, std::accumulate(bins.begin(), bins.end(), 0.0) /
                                      static_cast<double>(bins.size()));
    }
    levels[band] = 10.0 * std::log10(std::max(loudest * scale, 1e-15));
  }
  return levels;
}

}  // namespace

std::optional<NoiseProfile> MeasureNoiseProfile(AudioSource& source, const std::optional<Hum>& hum,
                                                const Progress& progress) {
  constexpr double kShortest = 0.05;  // seconds
  FilteredSource filtered(source, WithoutRumbleAndHum(hum));
  QuietestStretch quietest(filtered.Format());
  ProgressingReader reader(filtered, progress);
  for (AudioBlock block; reader.Read(block);) {
    quietest.Add(block);
  }
  const std::vector<std::vector<double>> channels = quietest.Get();
  const int sampleRate = filtered.Format().sampleRate;
  const bool isSilent = std::ranges::all_of(channels, [](const std::vector<double>& samples) {
    return std::ranges::all_of(samples, [](double sample) { return std::abs(sample) < 1e-6; });
  });
  if (isSilent || static_cast<double>(channels.front().size()) < kShortest * sampleRate) {
    return std::nullopt;
  }
  const Bands levels = BandLevels(channels, sampleRate);
  const double mean =
      std::accumulate(levels.begin(), levels.end(), 0.0) / static_cast<double>(levels.size());
  NoiseProfile profile{std::clamp(mean + kProfileAboveNoise, -80.0, -20.0), {}};
  std::ranges::transform(levels, profile.bands.begin(),
                         [mean](double level) { return std::clamp(level - mean, -24.0, 24.0); });
  return profile;
}

std::string BandNoiseText(const NoiseProfile& profile) {
  std::string text;
  for (const double band : profile.bands) {
    char number[32];
    std::snprintf(number, sizeof number, "%s%.2f", text.empty() ? "" : "|", band);
    text += number;
  }
  return text;
}

}  // namespace orvelhost
