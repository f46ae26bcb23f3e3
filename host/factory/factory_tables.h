#pragma once

#include <string>
#include <vector>

namespace orvelhost {

/// The design of the shipped presets in physical units, for people: Markdown tables of the
/// equaliser's curves, of the reverbs, and of the user presets of each mode.
/// docs/factory-presets.md shows them.
std::vector<std::string> FactoryTables();

}  // namespace orvelhost
