#include "orvel/models/clip_type.h"

namespace orvel {

// clang-format off
const char* const kClipTypeNameNotSetStr          = "$$$/orvel/ClipTypeNameNotSet=Not set";
const char* const kClipTypeNameDialogStr          = "$$$/orvel/ClipTypeNameDialogue=Dialogue";
const char* const kClipTypeNameMusicStr           = "$$$/orvel/ClipTypeNameMusic=Music";
const char* const kClipTypeNameBackgroundMusicStr = "$$$/orvel/ClipTypeNameBackgroundMusic=Background Music";
const char* const kClipTypeNameSFXStr             = "$$$/orvel/ClipTypeNameSFX=SFX";
const char* const kClipTypeNameAmbienceStr        = "$$$/orvel/ClipTypeNameAmbience=Ambience";
const char* const kClipTypeNameOtherStr           = "$$$/orvel/ClipTypeNameOther=Other";
// clang-format on

const char* const kAdjustmentsModeNameDialogStr = kClipTypeNameDialogStr;
const char* const kAdjustmentsModeNameMusicStr = kClipTypeNameMusicStr;
const char* const kAdjustmentsModeNameSFXStr = kClipTypeNameSFXStr;
const char* const kAdjustmentsModeNameAmbienceStr = kClipTypeNameAmbienceStr;

}  // namespace orvel
