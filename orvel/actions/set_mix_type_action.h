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

/// Gives the clips that the model stands for now another adjustments mode with a user preset. Clips
/// that are not in the mode yet get its id, the preset's guid and the preset's values in the
/// sections of the mode, and defaults where the preset has none; the others stay as they are. The
/// sections of the model that belong to another mode go back to their defaults. Undo gives each
/// clip its own mode, guid and values back.
///
/// Meanwhile the model's signalling is suspended and it has no section models. Clips change before
/// sections appear: mode, then guid, then values. It records the usage event
/// "orvel_set_adjustments_mode" with the mode and clip type of the first clip that changed, and
/// "orvel_set_user_preset" for each clip that did.
///
/// A compound action of the type kActionType_SetMixTypeModelParam, empty without a model.
ORVEL_EXPORT boost::intrusive_ptr<MultiAction> CreateSetMixTypeAction(
    const boost::intrusive_ptr<OrvelModel>& model, const std::string& modeID,
    const Preset<UserPresetData>& preset, const std::u16string& name);

/// The same, in a compound action of its own, with the default preset of the mode's current
/// configuration. Empty without a model or a configuration manager, and for
/// `kAdjustmentsModeUnknown`.
ORVEL_EXPORT boost::intrusive_ptr<MultiAction> CreateSetMixTypeWithDefaultPresetAction(
    const boost::intrusive_ptr<OrvelModel>& model, const std::string& modeID,
    const std::u16string& name);

}  // namespace orvel
