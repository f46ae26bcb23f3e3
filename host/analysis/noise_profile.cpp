#include "host/analysis/noise_profile.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <vector>

#include "host/analysis/filtered_source.h"
#include "host/analysis/steady_noise.h"

namespace orvelhost {
namespace {

/// The filter takes noise as lying 3 dB below the mean square of white noise of its density, and
/// what it compares with the profile swings by some dB around that. From here on it takes away all
/// that was asked, within 0.3 dB, and still leaves speech alone.
constexpr double kProfileAboveNoise = 5.0;  // dB

/// The filter knows bands that differ by no more, and counts them from their mean.
constexpr double kWidest = 48.0;  // dB

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

}  // namespace

std::optional<NoiseProfile> MeasureNoiseProfile(AudioSource& source, const std::optional<Hum>& hum,
                                                const Progress& progress) {
  FilteredSource filtered(source, WithoutRumbleAndHum(hum));
  SteadyNoise noise(filtered.Format());
  ProgressingReader reader(filtered, progress);
  for (AudioBlock block; reader.Read(block);) {
    noise.Add(block);
  }
  std::optional<NoiseBands> levels = noise.Finish();
  if (!levels) return std::nullopt;
  // Bands that a telephone or a codec has left empty would lie below all that the filter can tell.
  const double loudest = *std::ranges::max_element(*levels);
  for (double& level : *levels) level = std::max(level, loudest - kWidest);
  const double middle = (*std::ranges::min_element(*levels) + loudest) / 2.0;
  const double mean =
      std::accumulate(levels->begin(), levels->end(), 0.0) / static_cast<double>(levels->size());
  NoiseProfile profile{mean + kProfileAboveNoise, {}};
  std::ranges::transform(*levels, profile.bands.begin(),
                         [middle](double level) { return level - middle; });
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
