#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The effect and the configuration keys of the volume section, "model_volume": a clip's gain
/// through a hard limiter.
class ORVEL_EXPORT SectionVolumeConfig {
 public:
  /// The hard limiter.
  static const std::u16string& GetGainComponentID();

  /// The lower end of the volume slider, a float in dB; -15 when absent.
  static const std::string kConfig_MinGain;

  /// The upper end, a float in dB; 6 when absent.
  static const std::string kConfig_MaxGain;
};

/// The parameters of the volume section.
class ORVEL_EXPORT SectionModelVolumeParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,       ///< the section, a switch
    kEnableVolume,  ///< the control, a switch
    kVolume,        ///< in dB, over the range of the configuration
  };

  /// The range of `kVolume` is the one without a configuration.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
