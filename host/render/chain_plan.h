#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/catalogue/setting.h"
#include "host/session/clip_measurement.h"
#include "host/session/effect_chain.h"
#include "host/session/host.h"

namespace orvelhost {

/// What a person asks for: the sound that clips are to have.
struct Look {
  std::string mode;  ///< the adjustments mode, or empty: sections without a configuration
  std::optional<orvel::UserPreset> preset;
  std::vector<Setting> settings;  ///< stronger than the preset
};

/// What a look makes of a clip. A value, which any thread may hold.
struct ChainPlan {
  EffectChain chain;
  bool needsMeasurement = false;  ///< one that was not given; the chain will follow it
  bool needsRemixMap = false;     ///< with a map for a remix
};

/// Brings the look through the library's sections to a clip of this format, of which this was
/// measured. Main thread.
ChainPlan PlanChain(const Host& host, const Look& look, const AudioFormat& format,
                    const std::optional<ClipMeasurement>& measurement);

}  // namespace orvelhost
