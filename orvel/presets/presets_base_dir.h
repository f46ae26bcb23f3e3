#pragma once

#include <string>

#include "orvel/core/dir.h"
#include "orvel/core/export.h"

namespace orvel {

/// "Presets".
ORVEL_EXPORT std::u16string GetPresetsBaseDirName();

/// The folder of that name in the user's preferences folder. It need not exist yet.
ORVEL_EXPORT Dir GetPresetsBaseDir();

}  // namespace orvel
