#pragma once

#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The parameters of the pan section, "model_pan". It has no control: the host pans the clip
/// itself.
class ORVEL_EXPORT SectionModelPanParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,          ///< the section, a switch
    kPan,              ///< -5 (left) to 5 (right)
    kPanNotSupported,  ///< read back: 1 for a clip that cannot be panned
  };

  /// In the order of the ids.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
