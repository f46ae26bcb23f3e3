#include <algorithm>
#include <array>
#include <cmath>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

constexpr std::array<const char*, 4> kWindows = {"hann", "hamming", "blackman", "bharris"};

}  // namespace

std::vector<FilterSpec> FftFilter(EffectValues values, const EffectContext& context) {
  using namespace fftfilter;
  if (values[kBypass] >= 0.5) {
    return {};
  }
  FirCurve curve;
  const auto count = static_cast<std::size_t>(std::lround(values[kPointCount]));
  constexpr double kLeastStep = 0.01;  // Hz
  double lowest = 0.0;
  for (std::size_t point = 0; point < count; ++point) {
    const double frequency = std::max(lowest, values[kFirstPoint + 2 * point]);
    curve.points.emplace_back(frequency, values[kFirstPoint + 2 * point + 1]);
    lowest = frequency + kLeastStep;
  }
  curve.smooth = values[kSmoothCurve] >= 0.5;
  curve.minimumPhase = values[kMinimumPhase] >= 0.5;
  curve.length = values[kTransformSize];
  curve.window = kWindows[static_cast<std::size_t>(std::lround(values[kWindow]))];
  std::vector<FilterSpec> filters = FirFilter(curve, context.format.sampleRate);
  if (std::abs(values[kOutputGain]) > 1e-4) {
    filters.push_back(Gain(Factor(values[kOutputGain])));
  }
  return Blend(filters, values[kMix] / 100.0);
}

}  // namespace orvelhost
