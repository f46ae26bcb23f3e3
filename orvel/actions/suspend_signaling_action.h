#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"

namespace orvel {

class SectionModelInterface;

/// A bracket around the other children of a compound action. The opening one (`suspend`) silences
/// the model when it is redone and lets it speak, signals sent, when it is undone; the closing one
/// does it the other way round. Does nothing without a model. It has no action type.
ORVEL_EXPORT boost::intrusive_ptr<Action> CreateSuspendSignalingAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, bool suspend,
    const std::u16string& name);

}  // namespace orvel
