#pragma once

#include <string>

#include "host/catalogue/preset_store.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A user preset as people read it: its name, mode, template and guid, and for each section the
/// parameters with their stored values, in their units.
std::string ToText(const orvel::UserPreset& preset, const PresetStore& store);
teskcore::serialization::JSONValue ToJSON(const orvel::UserPreset& preset,
                                          const PresetStore& store);

/// A template: its name, mode and guid, whether it comes with the library, how many presets were
/// made under it; in JSON its sections' configurations, too.
std::string ToText(const orvel::ConfigPreset& configuration, const PresetStore& store);
teskcore::serialization::JSONValue ToJSON(const orvel::ConfigPreset& configuration,
                                          const PresetStore& store);

}  // namespace orvelhost
