#pragma once

#include <cstdint>
#include <string>

#include "orvel/core/export.h"

namespace orvel {

/// What a clip holds.
enum ClipType : std::int32_t {
  type_not_set = 0,           ///< nobody has said yet
  type_dialog = 1,            ///< speech
  type_music = 2,             ///< music in the foreground
  type_background_music = 3,  ///< music under something else
  type_sfx = 4,               ///< sound effects
  type_ambience = 5,          ///< the sound of a place
  type_other = 6,             ///< anything else
};

/// The clip type's name in documents and usage events, such as "type_dialog".
ORVEL_EXPORT const char* GetClipTypeText(ClipType type);

/// The clip type of such a name; `type_not_set` for any other text.
ORVEL_EXPORT ClipType ParseClipType(const std::string& text);

/// A localisation key of a clip type's display text, for `ZString`.
/// @{
extern ORVEL_EXPORT const char* const kClipTypeNameNotSetStr;
extern ORVEL_EXPORT const char* const kClipTypeNameDialogStr;
extern ORVEL_EXPORT const char* const kClipTypeNameMusicStr;
extern ORVEL_EXPORT const char* const kClipTypeNameBackgroundMusicStr;
extern ORVEL_EXPORT const char* const kClipTypeNameSFXStr;
extern ORVEL_EXPORT const char* const kClipTypeNameAmbienceStr;
extern ORVEL_EXPORT const char* const kClipTypeNameOtherStr;
/// @}

/// A localisation key of an adjustments mode's display text, for `ZString`.
/// @{
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameDialogStr;
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameMusicStr;
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameSFXStr;
extern ORVEL_EXPORT const char* const kAdjustmentsModeNameAmbienceStr;
/// @}

}  // namespace orvel
