#include <cmath>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

/// A normalised float tells 150 dB apart in steps of about 0.00001 dB. Without the rounding, a
/// gain of 0 dB would arrive as nearly 0.
double RoundDecibels(double decibels) { return std::round(decibels * 10000.0) / 10000.0; }

/// The largest float that is not above `value`: samples are floats, so a limit that is one, too,
/// is not exceeded by rounding.
double FloatBelow(double value) {
  const float nearest = static_cast<float>(value);
  return nearest > value ? std::nextafter(nearest, 0.0f) : nearest;
}

}  // namespace

std::vector<FilterSpec> HardLimiter(EffectValues values, const EffectContext& /*context*/) {
  const double ceiling = FloatBelow(Factor(RoundDecibels(values[hardlimiter::kCeiling])));
  const double gain = Factor(RoundDecibels(values[hardlimiter::kGain]));
  // The limiter works at full scale, where its own range of limits does not matter. Its automatic
  // level would bring the output back to full scale; its delay is taken off again.
  return {Gain(gain / ceiling),
          {"alimiter",
           {{"limit", "1"}, {"level", "0"}, {"latency", "1"}, {"attack", "5"}, {"release", "50"}}},
          Gain(ceiling)};
}

}  // namespace orvelhost
