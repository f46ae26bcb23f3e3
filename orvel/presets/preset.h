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
  /// The kind of payload; of a record that was read as it stood there, null when it stood not.
  /// Written as the constant of the payload.
  orvel::Guid Type = T::kType;
  std::uint32_t Version = 1;  ///< of the record's format

  T PresetData;  ///< the payload

  /// All of the records; the payloads by their own comparison.
  friend bool operator==(const Preset&, const Preset&) = default;
};

}  // namespace orvel
