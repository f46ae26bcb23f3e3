#pragma once

#include <cstdint>
#include <string>

#include "orvel/core/guid.h"

namespace orvel {

/// One preset. `T` is its payload: `UserPresetData` or `ConfigPresetData`.
template <typename T>
struct Preset {
  orvel::Guid Guid;  ///< null: no preset
  std::string Name;  ///< shown through `ZString`: a localisation key, or plain text
  orvel::Guid
      Type;  ///< the kind of payload, as it was read; written as the constant of the payload
  std::uint32_t Version = 1;  ///< of the record's format

  T PresetData;  ///< the payload
};

}  // namespace orvel
