#pragma once

#include <map>
#include <string>

#include "orvel/core/export.h"
#include "orvel/core/guid.h"
#include "orvel/core/prop_list.h"

namespace orvel {

/// The configuration of the sections of one adjustments mode.
struct ORVEL_EXPORT ConfigPresetData {
  /// Written in every record with this payload.
  static const Guid kType;

  std::string ModeID;  ///< the adjustments mode
  /// From model id to the section's configuration; an empty one leaves the section as it is built.
  std::map<std::string, PropList> Models;

  /// Whether all values are equal, to the bit.
  friend bool operator==(const ConfigPresetData&, const ConfigPresetData&) = default;
};

}  // namespace orvel
