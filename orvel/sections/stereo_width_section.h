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

/// The parameters of the stereo width section.
class ORVEL_EXPORT SectionModelStereoWidthParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,            ///< the section, a switch
    kEnableStereoWidth,  ///< the control, a switch
    kAdjustStereoWidth,  ///< 0..10; in the middle the width stays
  };

  /// In the order of the ids.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
