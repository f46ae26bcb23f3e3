#pragma once

#include <array>
#include <span>
#include <string>

#include "orvel/orvel.h"

namespace orvelhost {

/// A named setting of the studio reverb. An amount slider sets the dry and the wet level anew.
struct ReverbPreset {
  const char* mode;                 ///< the adjustments mode that offers it
  const char* word;                 ///< of the localisation key
  const char* title;                ///< in English
  std::array<double, 13> settings;  ///< in the units and the order of the effect's parameters
};

/// Mode by mode, in the order in which a selector shows them.
std::span<const ReverbPreset> ReverbPresets();

/// "$$$/app/Presets/Orvel/ReverbPreset/Word=Title".
std::string ReverbPresetKey(const ReverbPreset& preset);

/// The presets of a mode as the configuration of its creative section holds them.
orvel::PropList ReverbPresetTree(const std::string& mode);

}  // namespace orvelhost
