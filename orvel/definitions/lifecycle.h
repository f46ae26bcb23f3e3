#pragma once

#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"

namespace orvel {

class ActionExecutor;
class SessionHandlerInterface;
struct AdjustmentsModeDescriptor;

/// Starts the library: keeps the host's session handler and action executor, either of which may be
/// null, and the adjustments modes, loads the preset folder below `Dir::PrefDir`, which it makes
/// when there is none, and takes over the document's configurations. Called once on the main
/// thread, and again only after `Terminate`. What a callback of the host throws goes on; the
/// library is then stopped.
ORVEL_EXPORT void Initialize(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                             const boost::intrusive_ptr<ActionExecutor>& actionExecutor,
                             const std::vector<AdjustmentsModeDescriptor>& modes);

/// Stops the library: lets go of the session handler, of the configurations and of the adjustments
/// modes, also of those that came without `Initialize`. Handlers that are held any longer have no
/// presets and save none. The action executor stays until it is replaced, for actions that the
/// host's undo stack may still run. Harmless when there is nothing to let go of. What is kept at
/// the end of the process is not destroyed.
ORVEL_EXPORT void Terminate();

/// Whether the library is between `Initialize` and `Terminate`.
ORVEL_EXPORT bool IsInitialized();

namespace factory {

/// The session handler given to `Initialize`; null outside of it and `Terminate`.
ORVEL_EXPORT boost::intrusive_ptr<SessionHandlerInterface> GetSessionHandler();

}  // namespace factory
}  // namespace orvel
