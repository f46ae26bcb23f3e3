#pragma once

#include <string>

#include "orvel/core/export.h"
#include "orvel/core/immutable_string.h"

namespace orvel {

/// The keys under which a host stores what this library knows of a clip.
extern ORVEL_EXPORT const std::string kClipTypeKey;         ///< the clip type
extern ORVEL_EXPORT const std::string kAdjustmentsModeKey;  ///< the mode's id
extern ORVEL_EXPORT const std::string kClipPresetGuidKey;   ///< the user preset's guid, as text

/// The property of the basic adjustments.
extern ORVEL_EXPORT const ImmutableString kBasicAdjustmentsProperty;

/// The mode id of a clip that has no mode.
extern ORVEL_EXPORT const std::string kAdjustmentsModeUnknown;

}  // namespace orvel
