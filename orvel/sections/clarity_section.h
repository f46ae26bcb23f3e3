#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"
#include "orvel/definitions/parameter_mapping.h"

namespace orvel {

/// The effects and the configuration key of the clarity section, "model_clarity": dynamics,
/// equaliser, vocal enhancer.
class ORVEL_EXPORT SectionClarityConfig {
 public:
  /// The effect of the control.
  /// @{
  static const std::u16string& GetDynamicsComponentID();
  static const std::u16string& GetEQComponentID();
  static const std::u16string& GetVocalEnhanceComponentID();
  /// @}

  /// A tree of named float lists, one value per parameter of the equaliser on its scale of 0..1.
  static const std::string kConfig_EQPresets;

  /// The settings of the dynamics processor for a clip whose louder parts lie at `upperLevel` and
  /// whose quieter parts lie at `lowerLevel`, both in dBFS; any values are taken, and clamped to
  /// -100..0 dBFS. They stand in for the control's own mappings, which know nothing of the clip.
  static std::vector<ParameterMapping> ComputeDynamicsProcessorSettings(float upperLevel,
                                                                        float lowerLevel);
};

/// The parameters of the clarity section.
class ORVEL_EXPORT SectionModelClarityParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,              ///< the section, a switch
    kEnableDynamics,       ///< a switch
    kDynamicsAmount,       ///< 0..10
    kEnableEQ,             ///< a switch
    kEQAmount,             ///< 0..10; bends what the equaliser's preset gives
    kEQPreset,             ///< the place in the list of presets, from 0
    kEnableVocalEnhancer,  ///< a switch
    kVocalEnhancerMode,    ///< 0 or 1
    kEQCurveValue0,        ///< read back: the first of ten, one per band, each 0..1
    kAnalysisStatus = kEQCurveValue0 + 10,  ///< read back: 0..4, of the host's measurement
    kReanalyzeDynamics,                     ///< a trigger: measure the clip once more
  };

  /// The maximum of `kEQPreset` is set by the configuration.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
