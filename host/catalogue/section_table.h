#pragma once

#include <array>
#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelhost {

/// One effect parameter that follows a control's parameter.
struct EffectRow {
  std::string effect;
  int order = 0;  ///< the effect's place in a clip's chain
  unsigned index = 0;
  std::string parameter;
  std::string unit;
  /// Physical, at the least, the middle and the greatest value of the control's parameter.
  std::array<double, 3> values{};
};

/// One parameter of a section.
struct ParameterRow {
  orvel::ParamDefinition definition;
  std::string drives;  ///< the effect that it switches on, if it switches one
  std::vector<EffectRow> effects;
};

/// A section as a table: its parameters, and what each does to the effects.
struct SectionTable {
  std::string modelID;
  std::string name;
  std::vector<ParameterRow> parameters;
};

/// An amount that bends what another parameter maps is shown with that parameter at its default.
SectionTable MakeSectionTable(const orvel::SectionDefinition& definition);

/// For people, and as JSON.
std::string ToText(const SectionTable& table);
teskcore::serialization::JSONValue ToJSON(const SectionTable& table);

}  // namespace orvelhost
