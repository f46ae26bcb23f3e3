#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"

namespace orvel {

class SectionModelInterface;

/// Moves one parameter of a section model, or of each member of a `SectionMultiModel`, by `offset`
/// (normalized, -1..1) from the value that it had when the action was made, limited to 0..1.
/// `ChangeActionParamValue` gives another offset from the same values: clips that met at an end
/// stand apart again when a drag returns. Undo gives each clip its value back. Built and signalled
/// like `CreateSetModelParamAction`. A model that could not be read is left alone.
ORVEL_EXPORT boost::intrusive_ptr<Action> CreateOffsetModelParamAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const int& paramID, float offset,
    const std::u16string& name);

}  // namespace orvel
