#include "apps/orvel/catalogue_commands.h"

#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "apps/orvel/exit_code.h"
#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/preset_table.h"
#include "host/catalogue/section_table.h"

namespace orvelcli {
namespace {

using orvelhost::ModeCatalogue;
using teskcore::serialization::AppendToArray;
using teskcore::serialization::GetJSONUTF8String;
using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONValue;

struct Command {
  const char* name;
  const char* usage;
  bool needsMode;
};

constexpr Command kSections = {
    "orvel sections",
    "Usage: orvel sections MODE [--json]\n"
    "\n"
    "Lists the sections of an adjustments mode with their parameters: the range and the value at\n"
    "first, and what becomes of each effect parameter at the parameter's least, middle and\n"
    "greatest value, all in physical units.\n",
    true};
constexpr Command kPresets = {
    "orvel presets",
    "Usage: orvel presets [MODE] [--json]\n"
    "\n"
    "Lists the presets that come with the library, of all modes or of one, with the values that\n"
    "they set.\n",
    false};

struct Arguments {
  std::string mode;
  bool json = false;
};

int FailUsage(const Command& command, const std::string& cause) {
  std::cerr << command.name << ": " << cause << "\n";
  return kExit_Usage;
}

std::string ListModes(const ModeCatalogue& catalogue) {
  std::string list;
  for (const auto& mode : catalogue.modes) list += (list.empty() ? "" : ", ") + mode.modeID;
  return list;
}

/// None when the command is over; `exitCode` says how.
std::optional<Arguments> Parse(const Command& command, int argc, char** argv,
                               const ModeCatalogue& catalogue, int& exitCode) {
  Arguments arguments;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--help" || argument == "-h") {
      std::cout << command.usage << "\nModes: " << ListModes(catalogue) << "\n";
      exitCode = kExit_Success;
      return std::nullopt;
    }
    if (argument == "--json") {
      arguments.json = true;
    } else if (argument.starts_with('-') || !arguments.mode.empty()) {
      exitCode = FailUsage(command, "unexpected '" + std::string(argument) + "'; see --help");
      return std::nullopt;
    } else {
      arguments.mode = argument;
    }
  }
  if (arguments.mode.empty() && command.needsMode) {
    exitCode = FailUsage(command, "give a mode: " + ListModes(catalogue));
    return std::nullopt;
  }
  if (!arguments.mode.empty() && catalogue.FindMode(arguments.mode) == nullptr) {
    exitCode = FailUsage(command,
                         "there is no mode '" + arguments.mode + "', only " + ListModes(catalogue));
    return std::nullopt;
  }
  return arguments;
}

}  // namespace

int RunSections(int argc, char** argv) {
  const ModeCatalogue catalogue = orvelhost::ReadModeCatalogue();
  int exitCode = kExit_Success;
  const auto arguments = Parse(kSections, argc, argv, catalogue, exitCode);
  if (!arguments) return exitCode;
  JSONValue list = JSONArray();
  for (const auto& definition : catalogue.GetSections(*catalogue.FindMode(arguments->mode))) {
    const auto table = orvelhost::MakeSectionTable(definition);
    if (arguments->json) {
      AppendToArray(list, orvelhost::ToJSON(table));
    } else {
      std::cout << orvelhost::ToText(table) << "\n";
    }
  }
  if (arguments->json) std::cout << GetJSONUTF8String(list, true) << "\n";
  return kExit_Success;
}

int RunPresets(int argc, char** argv) {
  const ModeCatalogue catalogue = orvelhost::ReadModeCatalogue();
  int exitCode = kExit_Success;
  const auto arguments = Parse(kPresets, argc, argv, catalogue, exitCode);
  if (!arguments) return exitCode;
  JSONValue list = JSONArray();
  for (const auto& preset : catalogue.presets) {
    if (!arguments->mode.empty() && preset.PresetData.ModeID != arguments->mode) continue;
    if (arguments->json) {
      AppendToArray(list, orvelhost::ToJSON(preset, catalogue));
    } else {
      std::cout << orvelhost::ToText(preset, catalogue) << "\n";
    }
  }
  if (arguments->json) std::cout << GetJSONUTF8String(list, true) << "\n";
  return kExit_Success;
}

}  // namespace orvelcli
