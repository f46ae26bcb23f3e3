#include <algorithm>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {

std::vector<FilterSpec> DeEsser(EffectValues values, const EffectContext& context) {
  using namespace deesser;
  constexpr double kHighestShare = 0.45;  // of the sample rate: filters end before its half
  constexpr double kAllBands = 0.1;       // so blunt that nearly all follow
  const double centre =
      std::min(values[kCentreFrequency], kHighestShare * context.format.sampleRate);
  const double sharpness = centre / values[kBandwidth];
  // The filter takes 2 (1 - 1/r) of the excess, so that r of 2 holds the level at the threshold.
  const double ratio = 2.0 * values[kRatio] / (values[kRatio] + 1.0);
  const bool listens = values[kListen] >= 0.5;
  std::vector<FilterSpec> filters = {
      {"adynamicequalizer",
       // The detector's band is as much too loud at its centre as it is sharp.
       {{"threshold", Text(Factor(values[kThreshold]) * sharpness)},
        {"dfrequency", Text(centre)},
        {"dqfactor", Text(sharpness)},
        {"tfrequency", Text(centre)},
        {"tqfactor", Text(values[kSplitBand] >= 0.5 ? sharpness : kAllBands)},
        {"attack", Text(std::max(1.0, values[kAttack]))},
        {"release", Text(values[kRelease])},
        {"ratio", Text(ratio)},
        {"range", "0"},
        {"mode", listens ? "listen" : "cut"}}}};
  if (listens) {
    return filters;
  }
  // The filter knows no limit. What stays beside it is what is left at the most.
  const double left = Factor(-values[kReductionLimit]);
  filters = Blend(filters, values[kMix] / 100.0 * (1.0 - left));
  if (values[kSibilanceOnly] >= 0.5) {
    filters = Removed(filters);
  }
  if (values[kMakeUpGain] > 0.0) {
    filters.push_back(Gain(Factor(values[kMakeUpGain])));
  }
  return filters;
}

}  // namespace orvelhost
