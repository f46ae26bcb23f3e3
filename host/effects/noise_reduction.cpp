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
  const double wanted = context.noise->floor + values[kFloorTuning] + values[kThreshold];
  const double floor = std::clamp(wanted, kLowestFloor, kHighestFloor);
  // The filter's windows last three steps of an 80th of a second, and it works two steps behind.
  const std::int64_t delay = std::int64_t{2} * (context.format.sampleRate / 80);
  const FilterSpec denoiser = {"afftdn",
                               {{"noise_reduction", Text(values[kReduction])},
                                {"noise_floor", Text(floor)},
                                {"noise_type", "custom"},
                                {"band_noise", BandNoiseText(*context.noise)},
                                {"output_mode", values[kNoiseOnly] >= 0.5 ? "noise" : "output"}},
                               delay};
  if (floor == wanted) return {denoiser};
  // What is quieter or louder than the filter knows is brought to where it does.
  const double factor = Factor(floor - wanted);
  return {Gain(factor), denoiser, Gain(1.0 / factor)};
}

}  // namespace orvelhost
