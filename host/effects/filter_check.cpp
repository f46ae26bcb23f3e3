#include "host/effects/filter_check.h"

#include "host/audio/audio_error.h"
#include "host/effects/effect_catalogue.h"
#include "host/effects/effect_filters.h"

namespace orvelhost {
namespace {

/// Of a clip that lets each effect do all that it can.
EffectContext FullContext() {
  EffectContext context{{48000, 2}};
  context.humFrequency = 50.0;
  context.noise = NoiseProfile{-60.0, {}};
  return context;
}

/// Away from where a parameter changes nothing, so that each effect uses all of its filters, and
/// with its switches off.
constexpr float kSomewhere = 0.4f;

}  // namespace

std::vector<std::string> CheckFilters() {
  std::vector<std::string> faults;
  for (const EffectDescription& effect : Effects()) {
    try {
      const EffectContext context = FullContext();
      const std::vector<float> settings(effect.parameters.size(), kSomewhere);
      FilterGraph(context.format, EffectFilters(effect.componentId, settings, context));
    } catch (const AudioError& error) {
      faults.push_back(std::string("the effect ") + effect.name + " " + error.what());
    }
  }
  return faults;
}

}  // namespace orvelhost
