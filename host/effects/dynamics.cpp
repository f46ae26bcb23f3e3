#include <algorithm>
#include <cmath>
#include <utility>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

using LevelPoint = std::pair<double, double>;  // input and output in dBFS

/// The points of the curve, their inputs strictly rising as the filter demands it: of several at
/// one input the last one counts.
std::vector<LevelPoint> Points(EffectValues values) {
  using namespace dynamics;
  const auto count = static_cast<std::size_t>(std::lround(values[kPointCount]));
  constexpr double kLeastStep = 0.01;  // dB
  std::vector<LevelPoint> points;
  for (std::size_t index = 0; index < count; ++index) {
    const LevelPoint point(values[kFirstPoint + 2 * index], values[kFirstPoint + 2 * index + 1]);
    while (!points.empty() && points.back().first > point.first - kLeastStep) {
      points.pop_back();
    }
    points.push_back(point);
  }
  return points;
}

}  // namespace

std::vector<FilterSpec> Dynamics(EffectValues values, const EffectContext& /*context*/) {
  using namespace dynamics;
  constexpr double kMilliseconds = 1e-3;
  constexpr double kInaudible = 1e-3;  // dB
  // A voice is at its peaks for a small part of each of its periods. Over the whole time the filter
  // would average 10 dB below the peaks, for which the curve is drawn; so it comes within 2 dB.
  constexpr double kAttackShare = 0.1;
  std::vector<LevelPoint> points = Points(values);
  // Level with the last point beyond it, as the filter has it.
  const double atFullScale = points.empty() ? 0.0 : points.back().second - points.back().first;
  double gain = values[kOutputGain];
  if (values[kMakeUp] >= 0.5) {
    gain += std::min(values[kMakeUpLimit], std::max(0.0, -atFullScale));
  }
  std::vector<FilterSpec> filters;
  if (std::abs(values[kInputGain]) > kInaudible) {
    filters.push_back(Gain(Factor(values[kInputGain])));
  }
  const bool gates = values[kNoiseGate] >= 0.5 && !points.empty();
  if (gates || std::ranges::any_of(points, [](const LevelPoint& point) {
        return std::abs(point.first - point.second) > kInaudible;
      })) {
    // The filter begins with its envelope here: at an ordinary level, where the gain is the usual.
    const double start = points[points.size() / 2].first;
    if (gates) {
      points.insert(points.begin(), {points.front().first - 0.1, -200.0});
    }
    std::string text;
    for (const auto& [input, output] : points) {
      text.append(text.empty() ? "" : "|").append(Text(input)).append("/").append(Text(output));
    }
    filters.push_back(
        {"compand",
         {{"attacks",
           Text(kAttackShare * kMilliseconds * (values[kDetectorAttack] + values[kGainAttack]))},
          {"decays", Text(kMilliseconds * (values[kDetectorRelease] + values[kGainRelease]))},
          {"points", text},
          {"soft-knee", values[kSmoothCurve] >= 0.5 ? "6" : "0.01"},
          {"volume", Text(start)},
          {"delay", Text(kMilliseconds * values[kLookAhead])}}});
  }
  if (std::abs(gain) > kInaudible) {
    filters.push_back(Gain(Factor(gain)));
  }
  return Blend(filters, values[kMix] / 100.0);
}

}  // namespace orvelhost
