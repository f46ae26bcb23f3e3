#pragma once

#include <string>

#include "orvel/core/export.h"

namespace orvel {

// What the library's actions give to `Action::SetActionType`, so that a host knows what kind of
// change an action makes.

/// A change of the controls of a section.
extern ORVEL_EXPORT const std::u16string kActionType_SetSectionModelParam;

/// A change of a clip's mode or preset, or of a mode's configuration.
extern ORVEL_EXPORT const std::u16string kActionType_SetMixTypeModelParam;

/// For a host's own action that brings a clip to its target loudness.
extern ORVEL_EXPORT const std::u16string kActionType_SetClipLoudness;

}  // namespace orvel
