#include "host/factory/effect_settings.h"

#include <cassert>
#include <cmath>

#include "host/effects/effect_catalogue.h"

namespace orvelhost {

std::vector<float> NormalizedSettings(const std::u16string& componentId,
                                      std::span<const double> physical, int places) {
  const EffectDescription* effect = FindEffect(componentId);
  assert(effect != nullptr && effect->parameters.size() == physical.size());
  const double steps = std::pow(10.0, places);
  std::vector<float> settings;
  for (std::size_t index = 0; index < physical.size(); ++index) {
    const double exact = FromEffectScale(effect->parameters[index], physical[index]);
    assert(exact >= 0.0 && exact <= 1.0);
    settings.push_back(static_cast<float>(std::nearbyint(exact * steps) / steps));
  }
  return settings;
}

}  // namespace orvelhost
