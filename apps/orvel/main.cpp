#include <cstring>
#include <exception>
#include <iostream>

#include "apps/orvel/analyze_command.h"
#include "apps/orvel/catalogue_commands.h"
#include "apps/orvel/exit_code.h"
#include "apps/orvel/render_command.h"

namespace {

constexpr const char* kUsage =
    "Usage: orvel COMMAND ...\n"
    "\n"
    "  analyze     measures loudness, peaks, noise and hum of audio files\n"
    "  render      applies a preset or single sections to an audio file\n"
    "  sections    lists a mode's sections, and what each control does to the effects\n"
    "  presets     lists the presets that come with the library\n"
    "  --help      prints this; orvel COMMAND --help tells about a command\n"
    "  --version   prints the version\n";

int Run(int argc, char** argv) {
  const char* command = argc > 1 ? argv[1] : "";
  if (std::strcmp(command, "analyze") == 0) {
    return orvelcli::RunAnalyze(argc - 1, argv + 1);
  }
  if (std::strcmp(command, "render") == 0) {
    return orvelcli::RunRender(argc - 1, argv + 1);
  }
  if (std::strcmp(command, "sections") == 0) {
    return orvelcli::RunSections(argc - 1, argv + 1);
  }
  if (std::strcmp(command, "presets") == 0) {
    return orvelcli::RunPresets(argc - 1, argv + 1);
  }
  if (std::strcmp(command, "--help") == 0 || std::strcmp(command, "-h") == 0) {
    std::cout << kUsage;
    return orvelcli::kExit_Success;
  }
  if (std::strcmp(command, "--version") == 0) {
    std::cout << "orvel " << ORVEL_VERSION << "\n";
    return orvelcli::kExit_Success;
  }
  if (argc > 1) {
    std::cerr << "orvel: unknown command '" << command << "'; see orvel --help\n";
  } else {
    std::cerr << kUsage;
  }
  return orvelcli::kExit_Usage;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "orvel: " << error.what() << "\n";
    return orvelcli::kExit_Failed;
  }
}
