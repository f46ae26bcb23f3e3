#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvel/core/prop_list.h"
#include "orvel/definitions/parameter_mapping.h"

namespace orvel {

/// What a control needs to choose among the named settings of its effect that a configuration
/// holds.
struct PresetTable {
  std::size_t count = 0;
  /// One for each effect parameter that some preset gives, in their order, with a keypoint for each
  /// preset: the selector at k / (count - 1) gives the values of preset k.
  std::vector<ParameterMapping> mappings;

  /// The physical maximum of the selector; its minimum is 0.
  float GetSelectorMaximum() const { return count == 0 ? 0.0f : static_cast<float>(count - 1); }
};

/// Reads the tree of named float lists under `key`, in the order of the names. An element whose
/// index lies in [firstLeftOut, lastLeftOut] is not mapped. An entry that is no float list is
/// passed over; no tree gives no presets.
PresetTable ReadPresetTable(const PropList& configuration, const std::string& key,
                            unsigned firstLeftOut, unsigned lastLeftOut);

}  // namespace orvel
