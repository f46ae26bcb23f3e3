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

  /// The ends of the volume slider, floats in dB; -15 and 6 when absent.
  static const std::string kConfig_MinGain;
  static const std::string kConfig_MaxGain;
};

class ORVEL_EXPORT SectionModelVolumeParams {
 public:
  enum Param : int { kEnabled, kEnableVolume, kVolume };

  /// The range of `kVolume` is the one without a configuration.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
