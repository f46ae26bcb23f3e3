#pragma once

#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelhost {

/// What the library ships: its adjustments modes, with the template and the user presets of each.
struct ModeCatalogue {
  std::vector<orvel::AdjustmentsModeDescriptor> modes;
  std::vector<orvel::ConfigPreset> templates;
  std::vector<orvel::UserPreset> presets;

  /// Null when there is no such mode.
  const orvel::AdjustmentsModeDescriptor* FindMode(const std::string& modeID) const;

  /// The configuration of a section in a mode's template; empty when the template says nothing
  /// about it.
  orvel::PropList GetConfiguration(const std::string& modeID, const std::string& modelID) const;

  /// The definitions of a mode's sections, built from its template, in the mode's order.
  std::vector<orvel::SectionDefinition> GetSections(
      const orvel::AdjustmentsModeDescriptor& mode) const;
};

/// Reads it from the library's resources. Raises what the library's readers raise, which would mean
/// that the library was built with a broken document.
ModeCatalogue ReadModeCatalogue();

/// A name that may be a localisation key, as a person reads it.
std::string ShownName(const std::string& name);

/// The model id as commands name it, without "model_".
std::string ShortSectionName(const std::string& modelID);

}  // namespace orvelhost
