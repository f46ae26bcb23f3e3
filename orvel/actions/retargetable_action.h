#pragma once

#include "orvel/core/action.h"

namespace orvel {

/// An action whose effect can be moved while it stays one undo step; see `ChangeActionParamValue`.
class RetargetableAction : public Action {
 public:
  using Action::Action;

  /// Changes what the next redo applies. What undo restores stays.
  virtual void Retarget(float value) = 0;
};

}  // namespace orvel
