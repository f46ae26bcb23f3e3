#pragma once

#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelhost {

/// The adjustments modes of the running library, as people meet them.
std::vector<orvel::AdjustmentModeInfo> GetModes();
bool IsMode(const std::string& modeID);

/// The ids, separated by ", ".
std::string ListModes();

/// The definitions of a mode's sections, in the mode's order: as the mode is configured now, and
/// under one of its templates.
std::vector<orvel::SectionDefinition> MakeSections(const std::string& modeID);
std::vector<orvel::SectionDefinition> MakeSections(const orvel::ConfigPreset& configuration);

/// For people, a line each, and as JSON: the id, the name and the sections of every mode.
std::string ModesAsText();
teskcore::serialization::JSONValue ModesAsJSON();

/// A name that may be a localisation key, as a person reads it, the same for texts to print, and in
/// English. What was imported may hold anything, which JSON tells as it is.
std::string ShownName(const std::string& name);
std::string PrintedName(const std::string& name);
std::string EnglishName(const std::string& name);

/// The model id as commands name it, without "model_".
std::string ShortSectionName(const std::string& modelID);

}  // namespace orvelhost
