#pragma once

#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelhost {

/// The configuration presets that the library brings along, one for each adjustments mode, in the
/// order of their document.
const std::vector<orvel::ConfigPreset>& FactoryTemplates();

/// The one of a mode that has one.
const orvel::ConfigPreset& FactoryTemplate(const std::string& mode);

}  // namespace orvelhost
