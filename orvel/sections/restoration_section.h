#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The effects and the configuration keys of the repair section, "model_restoration".
class ORVEL_EXPORT SectionRestorationConfig {
 public:
  static const std::u16string& GetReduceNoiseComponentID();
  static const std::u16string& GetReduceHumComponentID();
  static const std::u16string& GetReduceSibilanceComponentID();
  static const std::u16string& GetReduceRumbleComponentID();

  /// Float lists, one value per parameter of the tool's effect on its scale of 0..1: its settings
  /// at amount 0 and at full amount. Element 6 of the noise settings is a size in samples when it
  /// is above 1.
  static const std::string kConfig_ReduceNoiseMinSetting;
  static const std::string kConfig_ReduceNoiseMaxSetting;
  static const std::string kConfig_ReduceSibilanceMinSetting;
  static const std::string kConfig_ReduceSibilanceMaxSetting;

  /// Ten values, of which the last is the number of points of the curve / 128, then a frequency and
  /// a gain for each point.
  static const std::string kConfig_ReduceRumbleMinSetting;
  static const std::string kConfig_ReduceRumbleMaxSetting;
};

class ORVEL_EXPORT SectionModelRestorationParams {
 public:
  enum Param : int {
    kEnabled,
    kEnableReduceNoise,
    kReduceNoise,
    kEnableReduceHum,
    kReduceHum,
    kEnableReduceSibilance,
    kReduceSibilance,
    kEnableReduceRumble,
    kReduceRumble,
    kHumFrequency,  ///< 50 or 60 Hz
  };

  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
