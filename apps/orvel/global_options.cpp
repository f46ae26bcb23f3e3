#include "apps/orvel/global_options.h"

#include <filesystem>
#include <string_view>

#include "apps/orvel/command_line.h"
#include "host/session/preferences.h"

namespace orvelcli {

std::vector<char*> TakeGlobalOptions(int argc, char** argv) {
  orvelhost::Preferences preferences;
  const struct {
    std::string_view name;
    std::filesystem::path& value;
  } options[] = {{"--prefs", preferences.folder}, {"--log", preferences.logFile}};
  std::vector<char*> others;
  bool isPastOptions = false;
  for (int i = 0; i < argc; ++i) {
    const std::string_view argument = argv[i];
    isPastOptions |= argument == "--";
    bool taken = false;
    for (const auto& [name, value] : options) {
      if (isPastOptions || !argument.starts_with(name)) continue;
      if (argument == name) {
        if (++i == argc) throw UsageError("the option " + std::string(name) + " needs a value");
        value = argv[i];
      } else if (argument[name.size()] == '=') {
        value = argument.substr(name.size() + 1);
      } else {
        continue;
      }
      if (value.empty()) throw UsageError("the option " + std::string(name) + " needs a value");
      taken = true;
      break;
    }
    if (!taken) others.push_back(argv[i]);
  }
  others.push_back(nullptr);
  orvelhost::SetPreferences(preferences);
  return others;
}

}  // namespace orvelcli
