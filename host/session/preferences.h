#pragma once

#include <filesystem>

namespace orvelhost {

/// Where a person's own things are kept; for the whole process, read whenever a Host is made.
struct Preferences {
  /// Holds the presets and the templates (in "Presets") and "translations.json". Empty: the folder
  /// "orvel" in the platform's configuration folder. It need not exist yet.
  std::filesystem::path folder;
  /// Receives traces and usage events. Empty, as it is at first: nothing is written anywhere.
  std::filesystem::path logFile;
};

void SetPreferences(const Preferences& preferences);
const Preferences& GetPreferences();

/// Makes that folder the library's, and returns its path. Raises std::runtime_error for a name that
/// is not valid UTF-8.
std::filesystem::path UsePreferencesFolder();

}  // namespace orvelhost
