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
  /// The target until the user chooses one; a float in the unit of the standard (LUFS).
  static const std::string kConfig_DefaultLoudness;

  /// The least target to choose, in the same unit.
  static const std::string kConfig_MinLoudness;

  /// The greatest target to choose, in the same unit.
  static const std::string kConfig_MaxLoudness;

  /// An unsigned index into the host's list of loudness standards.
  static const std::string kConfig_LoudnessStandard;
};

/// The parameters of the loudness section.
class ORVEL_EXPORT SectionModelLoudnessParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,                    ///< the section, a switch
    kAutoLoudness,               ///< a switch: bring the clip to its target
    kMeasuredLoudness,           ///< read back: of the clip as it is, in LUFS
    kAdjustedLoudness,           ///< read back: of the clip as it becomes, in LUFS
    kAnalysisStatus,             ///< read back: 0..4, of the host's measurement
    kResetLoudnessMeasurements,  ///< a trigger: forget what was measured
  };

  /// In the order of the ids.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
