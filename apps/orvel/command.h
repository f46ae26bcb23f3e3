#pragma once

#include <iostream>
#include <string>
#include <vector>

#include "apps/orvel/command_line.h"
#include "host/catalogue/json_values.h"
#include "host/session/host.h"
#include "orvel/orvel.h"

namespace orvelcli {

/// A command of the program.
struct Command {
  const char* name;   ///< as it is called: "orvel presets save"
  const char* usage;  ///< what --help prints
  std::vector<OptionSyntax> options;
  /// Returns an ExitCode. May raise UsageError, and any other exception for what it failed at.
  int (*run)(const Command& command, const CommandLine& line);
  /// What --help prints behind the usage. May be null; may raise UsageError.
  std::string (*describe)(const CommandLine& line) = nullptr;
};

/// Runs it on its arguments, which begin with its name; tells what went wrong. Returns an ExitCode.
int RunCommand(const Command& command, int argc, char** argv);

/// Tells on the error stream what the library found amiss in the preset folder.
void PrintNotes(const Command& command, const CommandLine& line, const orvelhost::Host& host);

void PrintJSON(const teskcore::serialization::JSONValue& value);

/// Prints the text of each entry, or with --json an array of them all.
template <typename List, typename ToText, typename ToJSON>
void PrintList(const CommandLine& line, const List& list, const ToText& toText,
               const ToJSON& toJSON) {
  if (line.AsJSON()) return PrintJSON(orvelhost::MakeArray(list, toJSON));
  for (const auto& entry : list) std::cout << toText(entry);
}

/// The mode that was given, checked; empty when `modeID` is. Raises UsageError.
std::string CheckMode(const std::string& modeID);

}  // namespace orvelcli
