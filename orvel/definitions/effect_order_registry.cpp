#include "orvel/definitions/effect_order_registry.h"

#include <map>

namespace orvel {
namespace {

std::map<std::u16string, int>& Numbers() {
  static auto& numbers = *new std::map<std::u16string, int>;  // never destroyed
  return numbers;
}

}  // namespace

void EffectOrderRegistry::RegisterEffect(const std::u16string& componentID, int number) {
  Numbers()[componentID] = number;
}

int EffectOrderRegistry::GetEffectOrderNumber(const std::u16string& componentID) {
  const auto found = Numbers().find(componentID);
  return found == Numbers().end() ? -1 : found->second;
}

}  // namespace orvel
