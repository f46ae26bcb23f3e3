#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/core/json.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"

namespace teskcore::serialization {

// Payloads and whole presets, to and from their JSON objects.

/// The values of a user preset. Reading leaves a missing member's
/// field empty (the null guid, an empty text, no models) and passes over members that it does not
/// know. It raises `BadCast` for a member of the wrong kind and `boost::numeric::bad_numeric_cast`
/// for a number outside its type, and then gives no record at all.
template <>
struct ORVEL_EXPORT JSONConvert<orvel::UserPresetData> {
  /// The JSON object of the record.
  static JSONValue ToJSON(const orvel::UserPresetData& data);

  /// The record of a JSON object.
  static orvel::UserPresetData FromJSON(const JSONValue& value);
};

/// The configurations of a configuration preset, by the same rules.
template <>
struct ORVEL_EXPORT JSONConvert<orvel::ConfigPresetData> {
  /// The JSON object of the record.
  static JSONValue ToJSON(const orvel::ConfigPresetData& data);

  /// The record of a JSON object.
  static orvel::ConfigPresetData FromJSON(const JSONValue& value);
};

/// A user preset. A value that is no object gives an empty preset, with the null guid. "Version" is
/// written as 1 and never read, so a record in memory always is of version 1; "Type" is written as
/// the constant of the payload.
template <>
struct ORVEL_EXPORT JSONConvert<orvel::Preset<orvel::UserPresetData>> {
  /// The JSON object of the record.
  static JSONValue ToJSON(const orvel::Preset<orvel::UserPresetData>& preset);

  /// The record of a JSON object.
  static orvel::Preset<orvel::UserPresetData> FromJSON(const JSONValue& value);
};

/// A configuration preset, by the same rules.
template <>
struct ORVEL_EXPORT JSONConvert<orvel::Preset<orvel::ConfigPresetData>> {
  /// The JSON object of the record.
  static JSONValue ToJSON(const orvel::Preset<orvel::ConfigPresetData>& preset);

  /// The record of a JSON object.
  static orvel::Preset<orvel::ConfigPresetData> FromJSON(const JSONValue& value);
};

}  // namespace teskcore::serialization

namespace orvel {

/// Raised for a text that is no JSON; the message is "JSON not well-formed".
class ORVEL_EXPORT JSONError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The values of a look.
using UserPreset = Preset<UserPresetData>;

/// A template: the configuration of a mode's sections.
using ConfigPreset = Preset<ConfigPresetData>;

/// Reads the text of a file that holds one preset. Raises `JSONError`, and what `JSONConvert`
/// raises; `preset` is then as it was.
/// @{
ORVEL_EXPORT void ReadPreset(const std::string& text, UserPreset& preset);
ORVEL_EXPORT void ReadPreset(const std::string& text, ConfigPreset& preset);
/// @}

/// Reads a document, an array of presets, of which elements without a guid are left out. Raises the
/// same; `presets` is then as it was.
/// @{
ORVEL_EXPORT void ReadPresets(const std::string& text, std::vector<UserPreset>& presets);
ORVEL_EXPORT void ReadPresets(const std::string& text, std::vector<ConfigPreset>& presets);
/// @}

/// Writes such a text, indented by tabs, with CR LF at the ends of lines. False, with `text` as it
/// was, when a preset holds a number that is not finite.
/// @{
ORVEL_EXPORT bool WritePreset(const UserPreset& preset, std::string& text);
ORVEL_EXPORT bool WritePreset(const ConfigPreset& preset, std::string& text);
ORVEL_EXPORT bool WritePresets(const std::vector<UserPreset>& presets, std::string& text);
ORVEL_EXPORT bool WritePresets(const std::vector<ConfigPreset>& presets, std::string& text);
/// @}

}  // namespace orvel
