#pragma once

#include <string>

#include "orvel/core/export.h"

namespace orvel {

/// What the library's actions give to `Action::SetActionType`, so that a host knows what kind of
/// change an action makes: to the controls of a section; to a clip's mode or preset, or to a mode's
/// configuration. The last is for a host's own action that brings a clip to its target loudness.
extern ORVEL_EXPORT const std::u16string kActionType_SetSectionModelParam;
extern ORVEL_EXPORT const std::u16string kActionType_SetMixTypeModelParam;
extern ORVEL_EXPORT const std::u16string kActionType_SetClipLoudness;

}  // namespace orvel
