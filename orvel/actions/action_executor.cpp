#include "orvel/actions/action_executor.h"

namespace orvel {
namespace {

boost::intrusive_ptr<ActionExecutor>& Executor() {
  static auto& executor = *new boost::intrusive_ptr<ActionExecutor>;  // never destroyed
  return executor;
}

}  // namespace

void SetOrvelActionExecutor(const boost::intrusive_ptr<ActionExecutor>& executor) {
  Executor() = executor;
}

boost::intrusive_ptr<ActionExecutor> GetOrvelActionExecutor() { return Executor(); }

bool ExecuteOrvelAction(const boost::intrusive_ptr<Action>& action) {
  const auto executor = GetOrvelActionExecutor();
  return executor && executor->Execute(action);
}

bool ExecuteOrvelActionWithoutUndo(const boost::intrusive_ptr<Action>& action, bool flag) {
  const auto executor = GetOrvelActionExecutor();
  return executor && executor->ExecuteWithoutUndo(action, flag);
}

}  // namespace orvel
