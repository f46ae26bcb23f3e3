#include <algorithm>
#include <cmath>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

/// The mains drift by much less, and the wrong mains are much further away.
constexpr double kLargestDrift = 0.02;

double BaseFrequency(double nominal, const EffectContext& context) {
  return context.humFrequency && std::abs(*context.humFrequency / nominal - 1.0) <= kLargestDrift
             ? *context.humFrequency
             : nominal;
}

}  // namespace

std::vector<FilterSpec> DeHummer(EffectValues values, const EffectContext& context) {
  using namespace dehummer;
  const double base = BaseFrequency(values[kBaseFrequency], context);
  const int harmonics = static_cast<int>(std::lround(values[kHarmonics]));
  std::vector<FilterSpec> notches;
  for (int harmonic = 1; harmonic <= harmonics; ++harmonic) {
    const double frequency = base * harmonic;
    const double slope = values[kHarmonicSlope] / 100.0 * (harmonic - 1) / harmonics;
    const double left = Factor(std::min(0.0, values[kHumLevel] * (1.0 - slope)));
    if (frequency >= 0.49 * context.format.sampleRate || left >= 1.0) {
      break;
    }
    // A notch takes all of its frequency; blended with the signal it leaves what is asked for. In
    // single precision it would be too coarse for so low frequencies.
    notches.push_back({"bandreject",
                       {{"frequency", Text(frequency)},
                        {"width_type", "q"},
                        {"width", Text(values[kSharpness])},
                        {"mix", Text(1.0 - left)},
                        {"precision", "f64"}}});
  }
  return values[kHumOnly] >= 0.5 && !notches.empty() ? Removed(notches) : notches;
}

}  // namespace orvelhost
