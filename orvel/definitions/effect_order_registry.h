#pragma once

#include <string>

#include "orvel/core/export.h"

namespace orvel {

/// Order numbers of effects that a host adds to a clip's chain besides those of the sections.
class ORVEL_EXPORT EffectOrderRegistry {
 public:
  /// Sets the number of an effect, also one that has a number already.
  static void RegisterEffect(const std::u16string& componentID, int number);

  /// -1 for an effect without a number.
  static int GetEffectOrderNumber(const std::u16string& componentID);
};

}  // namespace orvel
