#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/models/adjustments_mode_descriptor.h"

namespace orvel {

/// The adjustments modes that are compiled into the library; none when they cannot be read.
ORVEL_EXPORT std::vector<AdjustmentsModeDescriptor> GetDefaultAdjustmentsModeDescriptors();

/// Replaces what `modes` holds by the modes of a JSON document: an array of objects with "modeId",
/// "displayname", "cliptype" and "sections" (an array of objects with "modelID"). What is no
/// object, or has no "modeId", is passed over; any other member that is missing or of the wrong
/// kind is empty. The result says only whether the text is JSON: false leaves `modes` as it was,
/// true may come with no modes at all.
ORVEL_EXPORT bool ParseJSONAdjustmentsModeDescriptors(
    const std::string& text, std::vector<AdjustmentsModeDescriptor>& modes);

}  // namespace orvel
