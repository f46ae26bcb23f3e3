#pragma once

#include <string>
#include <vector>

#include "host/catalogue/preset_store.h"

namespace orvelhost {

enum class ImportOutcome {
  kImported,
  kReplaced,   ///< it took the place of one of its guid or name
  kUnchanged,  ///< it was there already
  kRefused,
};

struct ImportedPreset {
  orvel::UserPreset preset;
  ImportOutcome outcome;
  std::string reason;  ///< of a refusal; otherwise what else is to be said, or empty
};

/// Saves the user presets of a text: one, or an array of them. One that was made under a template
/// which is not here goes under its mode's own. Presets of a guid or a name that is there are
/// refused, without `replace`.
///
/// Raises PresetError when the text holds no such presets, and when one cannot be written; nothing
/// of it has been saved then.
std::vector<ImportedPreset> ImportPresets(const std::string& text, const PresetStore& store,
                                          bool replace);

}  // namespace orvelhost
