#include "orvel/models/clip_keys.h"

namespace orvel {

const std::string kClipTypeKey = "ClipType";
const std::string kAdjustmentsModeKey = "AdjustmentMode";
const std::string kClipPresetGuidKey = "PresetGuid";
const ImmutableString kBasicAdjustmentsProperty =
    ImmutableString::CreateStatic("BasicAdjustmentsProperty");
const std::string kAdjustmentsModeUnknown = "AdjustmentsModeUnknown";

}  // namespace orvel
