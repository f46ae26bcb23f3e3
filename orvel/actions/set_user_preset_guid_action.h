#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/guid.h"
#include "orvel/models/mix_type_clip_model_interface.h"

namespace orvel {

/// Gives one clip the guid of its user preset, and on undo the one that it had when the action was
/// made. Both record the usage event "orvel_set_user_preset" with `modeID` and the preset's guid.
boost::intrusive_ptr<Action> CreateSetUserPresetGuidAction(
    const boost::intrusive_ptr<MixTypeClipModelInterface>& clip, const Guid& presetGuid,
    const std::string& modeID, const std::u16string& name);

}  // namespace orvel
