#pragma once

#include <optional>

#include "host/analysis/noise_profile.h"
#include "host/audio/audio_block.h"

namespace orvelhost {

/// What an effect knows of the clip that it acts on.
struct EffectContext {
  AudioFormat format;
  /// As measured; none when the clip has no hum, or nobody has looked for it.
  std::optional<double> humFrequency = {};
  /// As measured; none when the clip has no steady noise, or nobody has looked for it.
  std::optional<NoiseProfile> noise = {};
};

}  // namespace orvelhost
