#include "orvel/definitions/lifecycle.h"

#include "orvel/actions/action_executor.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "orvel/models/session_handler_interface.h"

namespace orvel {
namespace {

struct LibraryState {
  boost::intrusive_ptr<SessionHandlerInterface> sessionHandler;
  bool initialized = false;
};

LibraryState& State() {
  static LibraryState state;
  return state;
}

}  // namespace

void Initialize(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                const boost::intrusive_ptr<ActionExecutor>& actionExecutor,
                const std::vector<AdjustmentsModeDescriptor>& modes) {
  State().sessionHandler = sessionHandler;
  SetOrvelActionExecutor(actionExecutor);
  ModeDescriptorCache::Initialize(modes);
  State().initialized = true;
}

void Terminate() {
  State().sessionHandler = nullptr;
  ModeDescriptorCache::Terminate();
  State().initialized = false;
}

bool IsInitialized() { return State().initialized; }

boost::intrusive_ptr<SessionHandlerInterface> factory::GetSessionHandler() {
  return State().sessionHandler;
}

}  // namespace orvel
