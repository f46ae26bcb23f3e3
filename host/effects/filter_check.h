#pragma once

#include <string>
#include <vector>

namespace orvelhost {

/// Opens every filter that the effects are made of, once, and gives a line for each effect that
/// cannot run on this machine: its name, and which library or plugin is missing or why it fails.
std::vector<std::string> CheckFilters();

}  // namespace orvelhost
