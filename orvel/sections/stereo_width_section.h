#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The effect of the stereo width section, "model_stereowidth". It reads no configuration.
class ORVEL_EXPORT SectionStereoWidthConfig {
 public:
  /// The stereo expander.
  static const std::u16string& GetStereoWidthComponentID();
};

class ORVEL_EXPORT SectionModelStereoWidthParams {
 public:
  enum Param : int { kEnabled, kEnableStereoWidth, kAdjustStereoWidth };

  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
