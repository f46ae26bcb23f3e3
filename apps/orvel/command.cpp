#include "apps/orvel/command.h"

#include <exception>
#include <iostream>

#include "apps/orvel/exit_code.h"
#include "host/audio/audio_error.h"
#include "host/catalogue/mode_catalogue.h"

namespace orvelcli {

int RunCommand(const Command& command, int argc, char** argv) {
  try {
    const CommandLine line(command.options, argc, argv);
    if (line.Has("help")) {
      const std::string more = command.describe == nullptr ? "" : command.describe(line);
      std::cout << command.usage << more;
      return kExit_Success;
    }
    return command.run(command, line);
  } catch (const UsageError& error) {
    std::cerr << command.name << ": " << error.what() << "; see " << command.name << " --help\n";
    return kExit_Usage;
  } catch (const std::exception& error) {
    std::cerr << command.name << ": " << error.what() << "\n";
    return kExit_Failed;
  }
}

void PrintNotes(const Command& command, const CommandLine& line, const orvelhost::Host& host) {
  for (const std::string& trace : host.GetLog().TakeTraces()) {
    if (line.IsQuiet()) continue;
    std::cerr << command.name << ": note: " << orvelhost::Printable(trace) << "\n";
  }
}

void PrintJSON(const teskcore::serialization::JSONValue& value) {
  std::cout << teskcore::serialization::GetJSONUTF8String(value, true) << "\n";
}

std::string CheckMode(const std::string& modeID) {
  if (!modeID.empty() && !orvelhost::IsMode(modeID)) {
    throw UsageError("there is no mode '" + modeID + "', only " + orvelhost::ListModes());
  }
  return modeID;
}

}  // namespace orvelcli
