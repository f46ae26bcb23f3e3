#pragma once

#include <string>
#include <vector>

#include "orvel/models/clip_type.h"

namespace orvel {

/// One section of an adjustments mode.
struct SectionDescriptor {
  std::string modelID;
};

/// One adjustments mode: its names, the clip type that goes with it and its sections in display
/// order.
struct AdjustmentsModeDescriptor {
  std::string displayName;
  std::u16string localizedDisplayName;
  orvel::ClipType ClipType = type_not_set;
  std::string modeID;
  std::vector<SectionDescriptor> sections;
};

/// What a panel shows of an adjustments mode.
struct AdjustmentModeInfo {
  std::string modeID;
  std::string displayName;
  std::u16string localizedDisplayName;
  orvel::ClipType ClipType = type_not_set;
};

}  // namespace orvel
