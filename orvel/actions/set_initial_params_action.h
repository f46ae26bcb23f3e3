#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {

/// Gives the sections of the mode `modeID` their first values in every clip: those of `preset`, and
/// defaults where it has none. For clips that came into the mode just before; the section models of
/// a panel do not exist then, so each redo has models of its own made, one for each clip, and reads
/// from them what undo restores.
boost::intrusive_ptr<Action> CreateSetInitialParamsAction(const MixTypeClipModels& clips,
                                                          const std::string& modeID,
                                                          const UserPresetData& preset,
                                                          const std::u16string& name);

}  // namespace orvel
