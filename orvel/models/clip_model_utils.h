#pragma once

#include <string>

#include "orvel/core/export.h"
#include "orvel/core/guid.h"
#include "orvel/definitions/section_registry.h"
#include "orvel/models/clip_type.h"

namespace orvel::modelutils {

/// What several clips have in common. Each gives 0, also for no clips, 5 when the clips differ, or
/// the status of the clip that could not be read.

/// `type_not_set` for no clips. When the clips differ, the type of the first that differs from
/// those before it.
ORVEL_EXPORT int GetClipType(const MixTypeClipModels& clips, ClipType& type);

/// `kAdjustmentsModeUnknown` for no clips. When the clips differ, the mode of the first that
/// differs from those before it.
ORVEL_EXPORT int GetAdjustmentsMode(const MixTypeClipModels& clips, std::string& modeID);

/// The null guid for no clips, and when the clips differ.
ORVEL_EXPORT int GetUserPresetGuid(const MixTypeClipModels& clips, Guid& guid);

}  // namespace orvel::modelutils
