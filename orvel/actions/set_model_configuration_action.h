#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"
#include "orvel/core/prop_list.h"

namespace orvel {

/// Gives the section `modelID` of the mode `modeID` another configuration, and on undo the one that
/// it had when the action was made. Both go to the configuration manager there is at that time;
/// without one nothing is done.
ORVEL_EXPORT boost::intrusive_ptr<Action> CreateSetModelConfigurationAction(
    const std::string& modeID, const std::string& modelID, const PropList& configuration,
    const std::u16string& name);

}  // namespace orvel
