#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <utility>

#include "orvel/orvel.h"

namespace bench {

/// The configuration preset that the sample presets are made under.
inline const orvel::Guid kDialogConfig("58dc27a8-6a2a-480c-bd0c-4b45fff346a6");

/// A user preset shaped like the dialogue presets that the library ships, with other values at each
/// call.
inline orvel::UserPreset MakePreset(const std::string& name) {
  static std::mt19937 random(20240917);
  static constexpr std::pair<const char*, std::size_t> kSizes[] = {{"model_clarity", 8},
                                                                   {"model_loudness", 3},
                                                                   {"model_restoration", 10},
                                                                   {"model_soundeffects", 4},
                                                                   {"model_volume", 3}};
  std::uniform_real_distribution<float> value(-15.0f, 10.0f);
  orvel::UserPreset preset;
  preset.Guid = orvel::Guid::CreateUnique();
  preset.Name = name;
  preset.PresetData.Config = kDialogConfig;
  preset.PresetData.ModeID = "dialog";
  for (const auto& [modelID, size] : kSizes) {
    auto& values = preset.PresetData.Models[modelID];
    for (std::size_t k = 0; k < size; ++k) {
      values.push_back(k % 2 == 0 ? value(random) : static_cast<float>(random() % 2));
    }
  }
  return preset;
}

}  // namespace bench
