#include "host/session/preferences.h"

#include <stdexcept>
#include <string>

#include "orvel/orvel.h"

namespace orvelhost {
namespace {

Preferences& Chosen() {
  static Preferences preferences;
  return preferences;
}

}  // namespace

void SetPreferences(const Preferences& preferences) { Chosen() = preferences; }

const Preferences& GetPreferences() { return Chosen(); }

std::filesystem::path UsePreferencesFolder() {
  orvel::Dir folder;
  if (Chosen().folder.empty()) {
    orvel::Dir::SetPrefDir(folder);  // what a host set before is not the platform's
    folder = {orvel::Dir::PrefDir(), u"orvel"};
  } else {
    const std::string path = std::filesystem::absolute(Chosen().folder).string();
    folder = orvel::Dir(orvel::UTF8to16(path));
    if (orvel::UTF16to8(folder.FullPath()) != path) {
      throw std::runtime_error("the name of the preferences folder is not valid UTF-8");
    }
  }
  orvel::Dir::SetPrefDir(folder);
  return orvel::UTF16to8(folder.FullPath());
}

}  // namespace orvelhost
