#pragma once

#include <map>
#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/core/guid.h"

namespace orvel {

/// The control values of every section of one adjustments mode.
struct ORVEL_EXPORT UserPresetData {
  /// Written in every record with this payload.
  static const Guid kType;

  Guid Config;         ///< the configuration preset under which it was made
  std::string ModeID;  ///< the adjustments mode
  /// From model id to the section's stored value list, physical.
  std::map<std::string, std::vector<float>> Models;

  /// Values count as equal within 0.00001, so that a look that went through a file or a slider
  /// still is the same.
  friend ORVEL_EXPORT bool operator==(const UserPresetData& left, const UserPresetData& right);
};

}  // namespace orvel
