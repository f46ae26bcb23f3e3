#pragma once

#include <string>
#include <vector>

#include "orvel/models/clip_type.h"

namespace orvel {

/// One section of an adjustments mode.
struct SectionDescriptor {
  std::string modelID;  ///< such as "model_volume"
};

/// One adjustments mode: its names, the clip type that goes with it and its sections in display
/// order.
struct AdjustmentsModeDescriptor {
  std::string displayName;                  ///< in English, as documents spell it
  std::u16string localizedDisplayName;      ///< as it is shown
  orvel::ClipType ClipType = type_not_set;  ///< what clips of the mode hold
  std::string modeID;                       ///< such as "dialog"; compared byte by byte
  std::vector<SectionDescriptor> sections;  ///< in the order of the panel
};

/// What a panel shows of an adjustments mode.
struct AdjustmentModeInfo {
  std::string modeID;                       ///< such as "dialog"; compared byte by byte
  std::string displayName;                  ///< in English, as documents spell it
  std::u16string localizedDisplayName;      ///< as it is shown
  orvel::ClipType ClipType = type_not_set;  ///< what clips of the mode hold
};

}  // namespace orvel
