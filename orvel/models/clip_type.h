#pragma once

#include <cstdint>

namespace orvel {

/// What a clip holds.
enum ClipType : std::int32_t {
  type_not_set = 0,
  type_dialog = 1,
  type_music = 2,
  type_background_music = 3,
  type_sfx = 4,
  type_ambience = 5,
  type_other = 6,
};

}  // namespace orvel
