#include <array>
#include <cmath>

#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"

namespace orvelhost {
namespace {

constexpr std::array<double, graphicequalizer::kBands> kCentres = {  // Hz, ISO 266
    31.5, 63.0, 125.0, 250.0, 500.0, 1000.0, 2000.0, 4000.0, 8000.0, 16000.0};

}  // namespace

std::vector<FilterSpec> GraphicEqualizer(EffectValues values, const EffectContext& context) {
  using namespace graphicequalizer;
  if (values[kBypass] >= 0.5) {
    return {};
  }
  FirCurve curve;
  for (std::size_t band = 0; band < kBands; ++band) {
    curve.points.emplace_back(kCentres[band], values[kFirstBand + band] / 100.0 * values[kRange]);
  }
  curve.octaves = true;
  curve.window = "tukey";  // bends the curve least where bands differ most
  curve.smooth = true;
  curve.minimumPhase = values[kMinimumPhase] >= 0.5;
  curve.length = values[kAccuracy];
  std::vector<FilterSpec> filters = FirFilter(curve, context.format.sampleRate);
  if (std::abs(values[kMasterGain]) > 1e-4) {
    filters.push_back(Gain(Factor(values[kMasterGain])));
  }
  return filters;
}

}  // namespace orvelhost
