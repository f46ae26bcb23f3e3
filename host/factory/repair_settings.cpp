#include "host/factory/repair_settings.h"

#include <array>
#include <span>
#include <vector>

#include "host/effects/effect_catalogue.h"
#include "host/factory/effect_settings.h"

namespace orvelhost {
namespace {

using Config = orvel::SectionRestorationConfig;

// clang-format off
// At full amount more is taken, and given up more slowly. Of the two sizes the section uses the first.
constexpr std::array<double, 9> kNoiseStart = {{
    // reduction  noisiness  tuning  threshold  decay    preservation  transform     fine      noise
    // dB         %          dB      dB         ms       Hz            samples       estimate  only
       15,        20,        2,      2.5,       100,     300,           512,         0,        0,
}};
constexpr std::array<double, 9> kNoiseEnd = {{
       24,        40,        0,      0,         200,     600,          2048,         0,        0,
}};

// Sibilance of most voices lies round 3 to 4 kHz and above; at full amount the band is twice as wide.
constexpr std::array<double, 15> kSibilanceStart = {{
    // thresh.  attack  release  centre  width  only  split  ahead  knee  make-up  listen  limit  link  mix   ratio
    // dB       ms      ms       Hz      Hz                  ms     dB    dB               dB     %     %
       -10,     10,     100,     2700,   2000,  0,    1,     0,     0,    0,       0,      18,    100,  100,  5,
}};
constexpr std::array<double, 15> kSibilanceEnd = {{
       -40,     10,     100,     3500,   4000,  0,    1,     0,     0,    0,       0,      18,    100,  100,  5,
}};

constexpr std::array<double, 9> kRumbleFilter = {{
    // transform  window             smooth  gain  mix  views  minimum  bypass
    // samples    (Blackman-Harris)          dB    %           phase
       8192,      3,                 0,      0,    100, 0, 0,  0,       0,
}};

struct CurvePoint {
  double frequency;  // in Hz
  double gain;       // in dB
};
constexpr CurvePoint kRumbleStart[] = { { 18.39, 0   }, { 91.88,   0      }, { 103.37, 0 }, { 114.84, 0 }, { 22050, 0 } };
constexpr CurvePoint kRumbleEnd[]   = { { 18.39, -60 }, { 91.88, -59.9819 }, { 103.37, 0 }, { 114.84, 0 }, { 22050, 0 } };
// clang-format on

std::vector<float> Noise(std::span<const double> physical) {
  std::vector<float> settings =
      NormalizedSettings(orvel::kAdaptiveNoiseReductionID, physical, kRepairPlaces);
  // The section takes the transform's size in samples.
  settings[noisereduction::kTransformSize] =
      static_cast<float>(physical[noisereduction::kTransformSize]);
  return settings;
}

std::vector<float> Sibilance(std::span<const double> physical) {
  return NormalizedSettings(orvel::kIzotopeDeEsserID, physical, kRepairPlaces);
}

/// The last point stands in the points beyond the curve's own, too.
std::vector<float> Rumble(std::span<const CurvePoint> curve) {
  using namespace fftfilter;
  std::vector<double> physical(kRumbleFilter.begin(), kRumbleFilter.end());
  const double count = static_cast<double>(curve.size());
  physical.push_back(count);
  for (std::size_t point = 0; point < kMaxPoints; ++point) {
    const CurvePoint& at = point < curve.size() ? curve[point] : curve.back();
    physical.insert(physical.end(), {at.frequency, at.gain});
  }
  std::vector<float> settings = NormalizedSettings(orvel::kFFTFilterID, physical, kRepairPlaces);
  // A count is exact or it is another one.
  settings[kPointCount] = static_cast<float>(count / static_cast<double>(kMaxPoints));
  return settings;
}

}  // namespace

orvel::PropList RepairSettings() {
  orvel::PropList settings;
  settings.SetValue(Config::kConfig_ReduceNoiseMinSetting, Noise(kNoiseStart));
  settings.SetValue(Config::kConfig_ReduceNoiseMaxSetting, Noise(kNoiseEnd));
  settings.SetValue(Config::kConfig_ReduceSibilanceMinSetting, Sibilance(kSibilanceStart));
  settings.SetValue(Config::kConfig_ReduceSibilanceMaxSetting, Sibilance(kSibilanceEnd));
  settings.SetValue(Config::kConfig_ReduceRumbleMinSetting, Rumble(kRumbleStart));
  settings.SetValue(Config::kConfig_ReduceRumbleMaxSetting, Rumble(kRumbleEnd));
  return settings;
}

}  // namespace orvelhost
