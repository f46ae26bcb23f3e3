#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/presets/cache_based_presets_handler.h"

namespace orvel {

/// A handler of the user presets of a mode: those that were made under the configuration which is
/// current whenever it is asked. Null without a configuration manager. `provider` answers for the
/// values as they are now, see `modelutils::GetUserPresetData`.
ORVEL_EXPORT boost::intrusive_ptr<UserPresetsHandler> CreateUserPresetsHandler(
    const std::string& modeID,
    const UserPresetsHandler::Provider& provider = UserPresetsHandler::Provider());

}  // namespace orvel
