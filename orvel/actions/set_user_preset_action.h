#pragma once

#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"

namespace orvel {

class OrvelModel;
template <typename T>
struct Preset;
struct UserPresetData;

/// Writes a user preset's values into every section model that the model has now, each in one step
/// and each clip's of several, and the preset's guid to each clip. Sections that the preset does
/// not list keep their values, and so do parameters beyond a short list. Undo gives each clip its
/// own values and guid back. The model's signalling is suspended meanwhile. It records the usage
/// event "orvel_set_user_preset" for each clip. Does nothing without a model.
ORVEL_EXPORT boost::intrusive_ptr<Action> CreateSetUserPresetAction(
    const boost::intrusive_ptr<OrvelModel>& model, const Preset<UserPresetData>& preset,
    const std::u16string& name);

}  // namespace orvel
