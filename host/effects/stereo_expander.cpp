#include <algorithm>
#include <cmath>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {

std::vector<FilterSpec> StereoExpander(EffectValues values, const EffectContext& context) {
  std::vector<FilterSpec> filters;
  if (context.format.channelCount != 2) {
    return filters;
  }
  constexpr double kInaudible = 1e-6;
  const double side = 3.0 * values[stereoexpander::kWidth];
  if (std::abs(side - 1.0) > kInaudible) {
    filters.push_back({"extrastereo", {{"m", Text(side)}, {"c", "0"}}});
  }
  const double centre = 2.0 * values[stereoexpander::kCentre] - 1.0;
  if (std::abs(centre) > kInaudible) {
    // With m, s for the mid and side signals: left = m * toLeft + s, right = m * toRight - s.
    const double toLeft = std::min(1.0, 1.0 - centre);
    const double toRight = std::min(1.0, 1.0 + centre);
    filters.push_back(
        Matrix(Text((toLeft + 1.0) / 2.0) + "*c0+" + Text((toLeft - 1.0) / 2.0) + "*c1",
               Text((toRight - 1.0) / 2.0) + "*c0+" + Text((toRight + 1.0) / 2.0) + "*c1"));
  }
  return filters;
}

}  // namespace orvelhost
