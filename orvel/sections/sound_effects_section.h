#pragma once

#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The effect and the configuration key of the creative section, "model_soundeffects": a reverb
/// chosen from a list.
class ORVEL_EXPORT SectionSoundEffectsConfig {
 public:
  /// The studio reverb.
  static const std::u16string& GetReverbComponentID();

  /// A tree of named float lists, one value per parameter of the reverb on its scale of 0..1.
  static const std::string kConfig_ReverbPresets;
};

/// The parameters of the creative section.
class ORVEL_EXPORT SectionModelSoundEffectsParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,       ///< the section, a switch
    kEnableReverb,  ///< the control, a switch
    kAdjustReverb,  ///< 0..10, from dry to wet
    kReverbPreset,  ///< the place in the list of reverbs, from 0
  };

  /// The maximum of `kReverbPreset` is set by the configuration.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
