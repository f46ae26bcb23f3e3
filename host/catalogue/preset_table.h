#pragma once

#include <string>

#include "host/catalogue/mode_catalogue.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A user preset as people read it: its name and guid, and for each section the parameters with
/// their stored values, in their units.
std::string ToText(const orvel::UserPreset& preset, const ModeCatalogue& catalogue);
teskcore::serialization::JSONValue ToJSON(const orvel::UserPreset& preset,
                                          const ModeCatalogue& catalogue);

}  // namespace orvelhost
