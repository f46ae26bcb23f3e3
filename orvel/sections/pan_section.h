#pragma once

#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The parameters of the pan section, "model_pan". It has no control: the host pans the clip
/// itself.
class ORVEL_EXPORT SectionModelPanParams {
 public:
  enum Param : int { kEnabled, kPan, kPanNotSupported };

  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
