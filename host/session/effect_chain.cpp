#include "host/session/effect_chain.h"

#include <algorithm>

#include "host/effects/effect_catalogue.h"
#include "host/effects/effect_filters.h"

namespace orvelhost {

EffectSlot* EffectChain::Slot(const std::u16string& componentId, int orderNumber) {
  const auto found = std::ranges::find(slots_, componentId, &EffectSlot::componentId);
  if (found != slots_.end()) {
    return &*found;
  }
  const EffectDescription* effect = FindEffect(componentId);
  if (effect == nullptr) {
    return nullptr;
  }
  const auto place = std::ranges::upper_bound(slots_, orderNumber, {}, &EffectSlot::orderNumber);
  return &*slots_.insert(place, {componentId, orderNumber, false, InitialParameters(*effect)});
}

std::vector<FilterSpec> ChainFilters(const EffectChain& chain, const EffectContext& context) {
  std::vector<FilterSpec> filters;
  for (const EffectSlot& slot : chain.Slots()) {
    if (slot.enabled) {
      std::ranges::move(EffectFilters(slot.componentId, slot.parameters, context),
                        std::back_inserter(filters));
    }
  }
  std::ranges::move(PanFilters(chain.Pan(), context.format.channelCount),
                    std::back_inserter(filters));
  return filters;
}

EffectNeeds NeedsOf(const EffectChain& chain) {
  EffectNeeds needs;
  for (const EffectSlot& slot : chain.Slots()) {
    if (slot.enabled) {
      const EffectNeeds more = NeedsOf(slot.componentId);
      needs = {needs.hum || more.hum, needs.noise || more.noise};
    }
  }
  return needs;
}

std::vector<std::string> UnheardEffects(const EffectChain& chain, int channelCount) {
  const EffectContext asItIs = {{48000, channelCount}};
  const EffectContext stereo = {{48000, 2}};
  std::vector<std::string> names;
  for (const EffectSlot& slot : chain.Slots()) {
    if (slot.enabled && EffectFilters(slot.componentId, slot.parameters, asItIs).empty() &&
        !EffectFilters(slot.componentId, slot.parameters, stereo).empty()) {
      names.emplace_back(FindEffect(slot.componentId)->name);
    }
  }
  if (PanFilters(chain.Pan(), channelCount).empty() && !PanFilters(chain.Pan(), 2).empty()) {
    names.emplace_back("Pan");
  }
  return names;
}

}  // namespace orvelhost
