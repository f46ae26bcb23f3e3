#include <algorithm>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {

std::vector<FilterSpec> NoiseReduction(EffectValues values, const EffectContext& context) {
  using namespace noisereduction;
  constexpr double kLeastReduction = 0.01;  // dB, of the filter
  if (!context.noise || values[kReduction] < kLeastReduction) {
    return {};
  }
  constexpr double kLowestFloor = -80.0;  // dB, of the filter
  constexpr double kHighestFloor = -20.0;
  const double floor = std::clamp(context.noise->floor + values[kFloorTuning] + values[kThreshold],
                                  kLowestFloor, kHighestFloor);
  // The filter's windows last three steps of an 80th of a second, and it works two steps behind.
  const std::int64_t delay = std::int64_t{2} * (context.format.sampleRate / 80);
  return {{"afftdn",
           {{"noise_reduction", Text(values[kReduction])},
            {"noise_floor", Text(floor)},
            {"noise_type", "custom"},
            {"band_noise", BandNoiseText(*context.noise)},
            {"output_mode", values[kNoiseOnly] >= 0.5 ? "noise" : "output"}},
           delay}};
}

}  // namespace orvelhost
