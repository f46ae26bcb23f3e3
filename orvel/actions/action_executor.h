#pragma once

#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/ref_counted.h"

namespace orvel {

/// Runs undoable actions; implemented by the host over its undo stack. Every run is bracketed by
/// the scope notification.
class ORVEL_EXPORT ActionExecutor : public virtual RefCountedObject {
 public:
  /// See `RegisterForActionExecutionScopeChanges`.
  using ScopeSignal = boost::signals2::signal<void(bool begin, bool sendSignals), CallEverySlot>;

  /// Runs the action and puts it on the undo stack; false when it was not run. The action that is
  /// on top already stays there once: a control that is being dragged is one action, changed by
  /// `ChangeActionParamValue` and executed again, and one step.
  virtual bool Execute(const boost::intrusive_ptr<Action>& action) = 0;

  /// Runs the action without recording it. What `flag` means is the host's affair.
  virtual bool ExecuteWithoutUndo(const boost::intrusive_ptr<Action>& action, bool flag) = 0;

  /// The slot receives (true, ...) before each run, undo or redo and (false, whether signals held
  /// back are to be sent) after it.
  virtual boost::signals2::connection RegisterForActionExecutionScopeChanges(
      const ScopeSignal::slot_type& slot) = 0;
};

/// Keeps the host's executor, and lets go of the one before.
ORVEL_EXPORT void SetOrvelActionExecutor(const boost::intrusive_ptr<ActionExecutor>& executor);

/// The host's executor; null until one is set.
ORVEL_EXPORT boost::intrusive_ptr<ActionExecutor> GetOrvelActionExecutor();

/// Hands an action to the executor's `Execute` and gives its result; false without an executor.
ORVEL_EXPORT bool ExecuteOrvelAction(const boost::intrusive_ptr<Action>& action);

/// The same through `ExecuteWithoutUndo`.
ORVEL_EXPORT bool ExecuteOrvelActionWithoutUndo(const boost::intrusive_ptr<Action>& action,
                                                bool flag);

}  // namespace orvel
