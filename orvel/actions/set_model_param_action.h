#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"

namespace orvel {

class SectionModelInterface;

/// Sets one parameter of a section model, and on undo the value that it had when the action was
/// made (0 when it could not be read). For a `SectionMultiModel` it is a compound action with one
/// child per member, so that each clip gets its own value back, between two brackets that make the
/// model send one signal after all were written. Without a model it does nothing.
///
/// A control that is being dragged is one such action: `ChangeActionParamValue`, and then the same
/// action executed again.
ORVEL_EXPORT boost::intrusive_ptr<Action> CreateSetModelParamAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const int& paramID, float normalized,
    const std::u16string& name);

/// Gives an action, and each child of a compound one, another value to apply at the next redo; for
/// an action of `CreateOffsetModelParamAction` that is another offset. What undo restores stays.
/// Actions of other kinds are left alone.
ORVEL_EXPORT void ChangeActionParamValue(const boost::intrusive_ptr<Action>& action, float value);

}  // namespace orvel
