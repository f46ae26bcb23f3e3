#include "host/session/effect_chain.h"

#include <algorithm>
#include <limits>

#include "host/effects/effect_catalogue.h"
#include "host/effects/effect_filters.h"
#include "host/effects/filter_specs.h"

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

namespace {

/// Of the effects whose order numbers lie from `begin` up to `end`.
void AppendEffects(std::vector<FilterSpec>& filters, const EffectChain& chain,
                   const EffectContext& context, int begin, int end) {
  for (const EffectSlot& slot : chain.Slots()) {
    if (slot.enabled && slot.orderNumber >= begin && slot.orderNumber < end) {
      std::ranges::move(EffectFilters(slot.componentId, slot.parameters, context),
                        std::back_inserter(filters));
    }
  }
}

}  // namespace

std::vector<FilterSpec> ShapingFilters(const EffectChain& chain, const EffectContext& context) {
  std::vector<FilterSpec> filters;
  AppendEffects(filters, chain, context, std::numeric_limits<int>::min(),
                EffectChain::kFinalEffects);
  return filters;
}

std::vector<FilterSpec> ChainFilters(const EffectChain& chain, const EffectContext& context) {
  std::vector<FilterSpec> filters = ShapingFilters(chain, context);
  if (chain.LoudnessGain() != 0.0) {
    filters.push_back(Gain(Factor(chain.LoudnessGain())));
  }
  AppendEffects(filters, chain, context, EffectChain::kFinalEffects,
                std::numeric_limits<int>::max());
  std::ranges::move(PanFilters(chain.Pan(), context.format.channelCount),
                    std::back_inserter(filters));
  return filters;
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
