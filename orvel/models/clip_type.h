#pragma once

#include <cstdint>
#include <string>

#include "orvel/core/export.h"

namespace orvel {

/// What a clip holds.
enum ClipType : std::int32_t {
  type_not_set = 0,
  type_dialog = 1,
  type_music = 2,
  type_background_music = 3,
  type_sfx = 4,
  type_ambience = 5,
  type_other = 6,
};

/// The clip type's name in documents and usage events, such as "type_dialog", and the way back: any
/// other text is `type_not_set`.
ORVEL_EXPORT const char* GetClipTypeText(ClipType type);
ORVEL_EXPORT ClipType ParseClipType(const std::string& text);

/// Localisation keys of the clip types' display texts, for `ZString`.
extern ORVEL_EXPORT const char* const kClipTypeNameNotSetStr;
extern ORVEL_EXPORT const char* const kClipTypeNameDialogStr;
extern ORVEL_EXPORT const char* const kClipTypeNameMusicStr;
extern ORVEL_EXPORT const char* const kClipTypeNameBackgroundMusicStr;
extern ORVEL_EXPORT const char* const kClipTypeNameSFXStr;
extern ORVEL_EXPORT const char* const kClipTypeNameAmbienceStr;
extern ORVEL_EXPORT const char* const kClipTypeNameOtherStr;

/// The same for the adjustments modes.
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameDialogStr;
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameMusicStr;
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameSFXStr;
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameAmbienceStr;

}  // namespace orvel
