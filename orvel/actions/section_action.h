#pragma once

#include <string>

#include <boost/function.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/models/section_model_interface.h"

namespace orvel {

/// Makes the action for a section model of one clip.
using SectionActionMaker = boost::function<boost::intrusive_ptr<Action>(
    const boost::intrusive_ptr<SectionModelInterface>& model)>;

/// Makes an action of the type kActionType_SetSectionModelParam: what `make` gives for the model,
/// or, for a `SectionMultiModel`, a compound action with a child for each member, in their order,
/// so that each clip keeps values of its own. `silent` puts a pair of suspend brackets around the
/// children: the model then speaks once, after all are written, in both directions.
boost::intrusive_ptr<Action> CreateSectionAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const std::u16string& name,
    bool silent, const SectionActionMaker& make);

}  // namespace orvel
