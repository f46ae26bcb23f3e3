#pragma once

#include <optional>
#include <span>

namespace orvelhost {

/// An entry of a table of presets, and how much of it, 0 to 10.
struct PresetAmount {
  const char* word = "";
  float amount = 0.0f;
};

/// The modes of the vocal enhancer that the clarity section offers.
enum class Voice { kHigh, kLow };

/// The design of a user preset: what it switches on, and how far. What stands in no entry stays
/// off, with the slider where a clip without a preset has it.
struct Look {
  const char* mode = "";
  const char* word = "";  ///< of the localisation key
  const char* title = "";
  const char* guid = "";  ///< never changed and never given again: clips refer to it

  bool autoLoudness = false;  ///< to the mode's target

  std::optional<float> noise{};  ///< amounts of repair, 0 to 10
  std::optional<float> hum{};
  std::optional<float> sibilance{};
  std::optional<float> rumble{};

  std::optional<float> dynamics{};  ///< 0 to 10
  std::optional<PresetAmount> equalizer{};
  std::optional<Voice> voice{};

  std::optional<PresetAmount> reverb{};
  std::optional<float> remixSeconds{};  ///< a length that the remix has to meet
  float pan = 0.0f;                     ///< -5 (left) to 5 (right)
  std::optional<float> width{};         ///< 0 to 10; 10/3 leaves the width as it is
  std::optional<float> volume{};        ///< in dB
};

/// Mode by mode, in the order of their document.
std::span<const Look> Looks();

}  // namespace orvelhost
