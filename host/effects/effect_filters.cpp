#include "host/effects/effect_filters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "host/audio/audio_error.h"
#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_specs.h"
#include "host/effects/realisations.h"
#include "orvel/orvel.h"

namespace orvelhost {
namespace {

struct Realisation {
  const std::u16string& componentId;
  std::vector<FilterSpec> (*build)(EffectValues values, const EffectContext& context);
};

const Realisation* FindRealisation(const std::u16string& componentId) {
  using namespace teskaudiofilters;
  // clang-format off
  static const std::array<Realisation, 10> realisations = {{
      // effect                       filters
      { kHardLimiterID,              &HardLimiter },
      { kStereoExpanderID,           &StereoExpander },
      { kAdaptiveNoiseReductionID,   &NoiseReduction },
      { kIzotopeDeHummerID,          &DeHummer },
      { kIzotopeDeEsserID,           &DeEsser },
      { kFFTFilterID,                &FftFilter },
      { kDynamicsID,                 &Dynamics },
      { kGraphicEQ10BandsID,         &GraphicEqualizer },
      { kIzotopeVocalEnhancerID,     &VocalEnhancer },
      { kStudioReverbID,             &StudioReverb },
  }};
  // clang-format on
  const auto found = std::ranges::find_if(
      realisations, [&](const Realisation& one) { return one.componentId == componentId; });
  return found == realisations.end() ? nullptr : &*found;
}

}  // namespace

std::vector<FilterSpec> EffectFilters(const std::u16string& componentId,
                                      std::span<const float> normalized,
                                      const EffectContext& context) {
  const EffectDescription* effect = FindEffect(componentId);
  const Realisation* realisation = FindRealisation(componentId);
  if (effect == nullptr || realisation == nullptr) {
    throw AudioError("this host cannot run the effect '" + orvel::UTF16to8(componentId) + "'");
  }
  std::vector<double> values;
  for (std::size_t index = 0; index < effect->parameters.size(); ++index) {
    values.push_back(ToEffectScale(
        effect->parameters[index],
        index < normalized.size() ? normalized[index] : std::numeric_limits<float>::quiet_NaN()));
  }
  return realisation->build(values, context);
}

std::vector<FilterSpec> PanFilters(double pan, int channelCount) {
  if (pan == 0.0 || std::isnan(pan) || channelCount > 2) {
    return {};
  }
  pan = std::clamp(pan, -1.0, 1.0);
  const std::string left = Text(std::min(1.0, 1.0 - pan)) + "*c0";
  const std::string right = Text(std::min(1.0, 1.0 + pan)) + (channelCount == 2 ? "*c1" : "*c0");
  return {Matrix(left, right)};
}

}  // namespace orvelhost
