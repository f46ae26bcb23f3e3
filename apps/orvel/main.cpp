#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orvel/analyze_command.h"
#include "apps/orvel/catalogue_commands.h"
#include "apps/orvel/command_line.h"
#include "apps/orvel/exit_code.h"
#include "apps/orvel/global_options.h"
#include "apps/orvel/preset_commands.h"
#include "apps/orvel/render_command.h"
#include "apps/orvel/session_command.h"
#include "host/session/activity_log.h"

namespace {

struct Verb {
  std::string_view name;
  std::string_view summary;
  int (*run)(int argc, char** argv);
};

// clang-format off
constexpr Verb kVerbs[] = {
  // name         summary                                                                  run
  { "analyze",    "measures loudness, peaks, noise and hum of audio files",                &orvelcli::RunAnalyze   },
  { "render",     "applies a preset or single sections to an audio file",                  &orvelcli::RunRender    },
  { "modes",      "lists the adjustments modes",                                           &orvelcli::RunModes     },
  { "sections",   "lists a mode's sections, and what each control does to the effects",    &orvelcli::RunSections  },
  { "presets",    "lists, saves, removes, exports and imports presets",                    &orvelcli::RunPresets   },
  { "templates",  "lists the templates, which configure a mode's sections",                &orvelcli::RunTemplates },
  { "session",    "works on a session of clips, by commands",                              &orvelcli::RunSession   },
};
// clang-format on

void PrintUsage(std::ostream& stream) {
  stream << "Usage: orvel COMMAND ...\n\n";
  for (const Verb& verb : kVerbs) {
    stream << "  " << verb.name << std::string(12 - verb.name.size(), ' ') << verb.summary << "\n";
  }
  stream << "  --help      prints this; orvel COMMAND --help tells about a command\n"
            "  --version   prints the version\n"
            "\n"
            "Every command takes these, too:\n"
            "\n"
            "  --prefs DIR   keeps presets, templates and translations there, not in the folder\n"
            "                orvel of the platform's configuration folder\n"
            "  --log FILE    adds usage events, and what the preset store had to tell, to this\n"
            "                file; otherwise nothing is logged\n";
}

int Run(int argc, char** argv) {
  const std::string_view name = argc > 1 ? argv[1] : "";
  const auto* verb = std::ranges::find(kVerbs, name, &Verb::name);
  if (verb != std::end(kVerbs)) return verb->run(argc - 1, argv + 1);
  if (name == "--help" || name == "-h") {
    PrintUsage(std::cout);
    return orvelcli::kExit_Success;
  }
  if (name == "--version") {
    std::cout << "orvel " << ORVEL_VERSION << "\n";
    return orvelcli::kExit_Success;
  }
  if (argc > 1) {
    std::cerr << "orvel: unknown command '" << name << "'; see orvel --help\n";
  } else {
    PrintUsage(std::cerr);
  }
  return orvelcli::kExit_Usage;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN);  // the write that grows a file past its limit fails, too
  try {
    std::vector<char*> arguments = orvelcli::TakeGlobalOptions(argc, argv);
    const int exitCode = Run(static_cast<int>(arguments.size()) - 1, arguments.data());
    std::cout.flush();
    const bool isDone = exitCode == orvelcli::kExit_Success;
    const std::string fault = isDone && !std::cout ? "what was to be printed could not be written"
                                                   : orvelhost::ActivityLog::Fault();
    if (fault.empty()) return exitCode;
    std::cerr << "orvel: " << fault << "\n";
    return isDone ? orvelcli::kExit_Failed : exitCode;
  } catch (const orvelcli::UsageError& error) {
    std::cerr << "orvel: " << error.what() << "; see orvel --help\n";
    return orvelcli::kExit_Usage;
  } catch (const std::exception& error) {
    std::cerr << "orvel: " << error.what() << "\n";
    return orvelcli::kExit_Failed;
  }
}
