#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The configuration keys of the loudness section, "model_loudness". It drives no effect: the
/// host's model measures the clip and brings it to the target, and reads these keys of its
/// definition's configuration.
class ORVEL_EXPORT SectionLoudnessConfig {
 public:
  /// Floats in the unit of the standard (LUFS): the target until the user chooses one, and the
  /// range to choose from.
  static const std::string kConfig_DefaultLoudness;
  static const std::string kConfig_MinLoudness;
  static const std::string kConfig_MaxLoudness;

  /// An unsigned index into the host's list of loudness standards.
  static const std::string kConfig_LoudnessStandard;
};

class ORVEL_EXPORT SectionModelLoudnessParams {
 public:
  enum Param : int {
    kEnabled,
    kAutoLoudness,
    kMeasuredLoudness,
    kAdjustedLoudness,
    kAnalysisStatus,
    kResetLoudnessMeasurements,
  };

  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
