#include "orvel/definitions/lifecycle.h"

#include "orvel/actions/action_executor.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/library_module.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "orvel/models/session_handler_interface.h"
#include "orvel/presets/presets_cache.h"

namespace orvel {
namespace {

struct LibraryState {
  boost::intrusive_ptr<SessionHandlerInterface> sessionHandler;
  bool initialized = false;
};

LibraryState& State() {
  static auto& state = *new LibraryState;  // never destroyed
  return state;
}

}  // namespace

void Initialize(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                const boost::intrusive_ptr<ActionExecutor>& actionExecutor,
                const std::vector<AdjustmentsModeDescriptor>& modes) {
  State().sessionHandler = sessionHandler;
  SetOrvelActionExecutor(actionExecutor);
  try {
    ModeDescriptorCache::Initialize(modes);
    const boost::intrusive_ptr<PresetsCache> cache(new PresetsCache(GetLibraryModule(), true));
    ConfigurationManager::Initialize(sessionHandler, cache,
                                     ModeDescriptorCache::Get()->GetAdjustmentsModes());
  } catch (...) {
    Terminate();
    throw;
  }
  State().initialized = true;
}

void Terminate() {
  State().sessionHandler = nullptr;
  const auto* manager = ConfigurationManager::Get();
  if (manager != nullptr && manager->GetPresetsCache()) manager->GetPresetsCache()->Close();
  ConfigurationManager::Terminate();
  ModeDescriptorCache::Terminate();
  State().initialized = false;
}

bool IsInitialized() { return State().initialized; }

boost::intrusive_ptr<SessionHandlerInterface> factory::GetSessionHandler() {
  return State().sessionHandler;
}

}  // namespace orvel
