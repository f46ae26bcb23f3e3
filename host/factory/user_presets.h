#pragma once

#include <string>
#include <vector>

#include "host/factory/looks.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// The user presets that the library brings along, in the order of their document.
std::vector<orvel::UserPreset> FactoryUserPresets();

/// "$$$/app/Presets/Orvel/WordPresetName=Title"; all modes share the key of "(Default)".
std::string UserPresetKey(const Look& look);

}  // namespace orvelhost
