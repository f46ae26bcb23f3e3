#pragma once

#include <map>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"

namespace orvel {

class SectionModelInterface;

/// Sets several parameters of a section model in one step (id to normalized value), and on undo the
/// values that they had when the action was made (0 for one that could not be read). For a
/// `SectionMultiModel` it is a compound action with one child per member and no brackets: each
/// member's step sends its own signals. Without a model it does nothing.
ORVEL_EXPORT boost::intrusive_ptr<Action> CreateSetModelParamMapAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const std::map<int, float>& values,
    const std::u16string& name);

}  // namespace orvel
