#pragma once

#include "orvel/core/export.h"

namespace orvel::modelutils {

/// The place of `value` between `min` (0) and `max` (1), not clamped; 0 for an empty range.
ORVEL_EXPORT float ToNormalized(float min, float max, float value);

/// The physical value at the place `normalized` between `min` (0) and `max` (1), not clamped.
ORVEL_EXPORT float ToPhysical(float min, float max, float normalized);

}  // namespace orvel::modelutils
