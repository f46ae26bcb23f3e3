#pragma once

#include <array>
#include <span>
#include <string>

#include "host/effects/effect_catalogue.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A named curve of the graphic equaliser, at full amount.
struct EqualizerPreset {
  const char* word;                                    ///< of the localisation key
  const char* title;                                   ///< in English
  double accuracy;                                     ///< in samples
  double range;                                        ///< in dB; no gain exceeds its half
  std::array<double, graphicequalizer::kBands> gains;  ///< in dB, 31.5 Hz first
};

/// In the order in which a selector shows them.
std::span<const EqualizerPreset> EqualizerPresets();

/// "$$$/app/Presets/Orvel/EQPreset/Word=Title".
std::string EqualizerPresetKey(const EqualizerPreset& preset);

/// The presets as the configuration of the clarity section holds them.
orvel::PropList EqualizerPresetTree();

}  // namespace orvelhost
