#pragma once

#include <map>
#include <string>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {

/// The stored value list of each section, by its model id.
using SectionLists = std::map<std::string, std::vector<float>>;

/// Gives the sections of the mode `modeID` their first values in every clip: those of `lists`, and
/// defaults where they have none. For clips that came into the mode just before; the section models
/// of a panel do not exist then, so each redo has models of its own made, one for each clip, and
/// reads from them what undo restores.
boost::intrusive_ptr<Action> CreateSetInitialParamsAction(const MixTypeClipModels& clips,
                                                          const std::string& modeID,
                                                          const SectionLists& lists,
                                                          const std::u16string& name);

}  // namespace orvel
