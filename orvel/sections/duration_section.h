#pragma once

#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The parameters of the duration section, "model_duration". It drives no effect and reads no
/// configuration: the host remixes or stretches the clip itself. The target is `kTargetDuration` /
/// `kDurationDenominator` seconds, or `kTargetDuration` seconds when the denominator is 0.
class ORVEL_EXPORT SectionModelDurationParams {
 public:
  /// The ids. Values are physical; a switch is 0 or 1.
  enum Param : int {
    kEnabled,               ///< the section, a switch
    kTargetDuration,        ///< 0..86400, see above
    kMode,                  ///< 0 remixes, 1 stretches
    kFavorShorterSegments,  ///< a switch, for a remix
    kSamplerate,            ///< read back: of the clip, in Hz
    kMinDuration,           ///< read back: the least target, in seconds
    kMaxDuration,           ///< read back: the greatest target, in seconds
    kDurationDenominator,   ///< 0..100000, see above
  };

  /// In the order of the ids.
  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
