#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The effects and the configuration keys of the repair section, "model_restoration".
class ORVEL_EXPORT SectionRestorationConfig {
 public:
  /// The effect of the tool.
  /// @{
  static const std::u16string& GetReduceNoiseComponentID();
  static const std::u16string& GetReduceHumComponentID();
  static const std::u16string& GetReduceSibilanceComponentID();
  static const std::u16string& GetReduceRumbleComponentID();
  /// @}

  /// A float list, one value per parameter of the tool's effect on its scale of 0..1: its settings
  /// at amount 0 ("Min") or at full amount ("Max"). Element 6 of the noise settings is a size in
  /// samples when it is above 1.
  /// @{
  static const std::string kConfig_ReduceNoiseMinSetting;
  static const std::string kConfig_ReduceNoiseMaxSetting;
  static const std::string kConfig_ReduceSibilanceMinSetting;
  static const std::string kConfig_ReduceSibilanceMaxSetting;
  /// @}

  /// The same for the curve of the rumble filter: ten values, of which the last is the number of
  /// points of the curve / 128, then a frequency and a gain for each point.
  /// @{
  static const std::string kConfig_ReduceRumbleMinSetting;
  static const std::string kConfig_ReduceRumbleMaxSetting;
  /// @}
};

/// The parameters of the repair section: a switch and an amount for each tool.
class ORVEL_EXPORT SectionModelRestorationParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,                ///< the section, a switch
    kEnableReduceNoise,      ///< a switch
    kReduceNoise,            ///< 0..10
    kEnableReduceHum,        ///< a switch
    kReduceHum,              ///< 0..10
    kEnableReduceSibilance,  ///< a switch
    kReduceSibilance,        ///< 0..10
    kEnableReduceRumble,     ///< a switch
    kReduceRumble,           ///< 0..10
    kHumFrequency,           ///< 50 or 60 Hz
  };

  /// In the order of the ids.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
