#pragma once

#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelhost {

/// The values of a mode's sections at first, as a user preset of that template.
orvel::UserPresetData MakeDefaultValues(const orvel::ConfigPreset& configuration);

/// Writes settings, which `ParseSettings` reads, into a user preset of that template. False with
/// what `ParseSettings` has against them; `data` stays as it was.
bool SetPresetValues(const std::vector<std::string>& texts,
                     const orvel::ConfigPreset& configuration, orvel::UserPresetData& data,
                     std::string& error);

}  // namespace orvelhost
