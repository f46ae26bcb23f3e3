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
  enum Param : int {
    kEnabled,
    kTargetDuration,
    kMode,  ///< 0 remixes, 1 stretches
    kFavorShorterSegments,
    kSamplerate,  ///< of the clip, in Hz
    kMinDuration,
    kMaxDuration,
    kDurationDenominator,
  };

  static const std::vector<ParamDefinition> sParamDefinitions;
};

}  // namespace orvel
