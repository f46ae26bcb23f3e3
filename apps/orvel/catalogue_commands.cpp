#include "apps/orvel/catalogue_commands.h"

#include <iostream>

#include "apps/orvel/command.h"
#include "apps/orvel/exit_code.h"
#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/preset_store.h"
#include "host/catalogue/preset_table.h"
#include "host/catalogue/section_table.h"

namespace orvelcli {
namespace {

int ListModes(const Command& /*command*/, const CommandLine& line) {
  if (!line.Words().empty()) throw UsageError("unexpected '" + line.Words().front() + "'");
  const orvelhost::Host host;
  if (line.AsJSON()) {
    PrintJSON(orvelhost::ModesAsJSON());
  } else {
    std::cout << orvelhost::ModesAsText();
  }
  return kExit_Success;
}

int ListSections(const Command& command, const CommandLine& line) {
  if (line.Words().size() > 1) throw UsageError("unexpected '" + line.Words()[1] + "'");
  const orvelhost::Host host;
  if (line.Words().empty()) throw UsageError("give a mode: " + orvelhost::ListModes());
  const std::string mode = CheckMode(line.Words().front());
  const orvelhost::PresetStore store(host);
  PrintNotes(command, line, host);
  const std::string name = line.Value("template");
  PrintList(
      line,
      orvelhost::MakeSections(name.empty() ? store.GetFactoryTemplate(mode)
                                           : store.FindTemplate({name, mode, {}})),
      [](const auto& one) { return ToText(orvelhost::MakeSectionTable(one)) + "\n"; },
      [](const auto& one) { return ToJSON(orvelhost::MakeSectionTable(one)); });
  return kExit_Success;
}

int ListTemplates(const Command& command, const CommandLine& line) {
  if (line.Words().size() > 1) throw UsageError("unexpected '" + line.Words()[1] + "'");
  const orvelhost::Host host;
  const std::string mode = CheckMode(line.Words().empty() ? "" : line.Words().front());
  const orvelhost::PresetStore store(host);
  PrintNotes(command, line, host);
  PrintList(
      line, store.GetTemplates(mode),
      [&store](const auto& one) { return orvelhost::ToText(one, store); },
      [&store](const auto& one) { return orvelhost::ToJSON(one, store); });
  return kExit_Success;
}

const Command kModes = {"orvel modes",
                        "Usage: orvel modes [--json]\n"
                        "\n"
                        "Lists the adjustments modes, each with its name and its sections.\n",
                        {},
                        &ListModes};

const Command kSections = {
    "orvel sections",
    "Usage: orvel sections MODE [--template NAME] [--json]\n"
    "\n"
    "Lists the sections of an adjustments mode with their parameters: the range and the value at\n"
    "first, and what becomes of each effect parameter at the parameter's least, middle and\n"
    "greatest value, all in physical units.\n"
    "\n"
    "  --template NAME   under this template, not under the one that comes with the library\n"
    "  -j, --json        a JSON array\n",
    {{"template", 0, true}},
    &ListSections};

const Command kTemplates = {
    "orvel templates",
    "Usage: orvel templates [MODE] [--json]\n"
    "\n"
    "Lists the templates in your preset folder, of all modes or of one: what configures a mode's\n"
    "sections. In JSON each has the settings of its sections.\n",
    {},
    &ListTemplates};

}  // namespace

int RunModes(int argc, char** argv) { return RunCommand(kModes, argc, argv); }
int RunSections(int argc, char** argv) { return RunCommand(kSections, argc, argv); }
int RunTemplates(int argc, char** argv) { return RunCommand(kTemplates, argc, argv); }

}  // namespace orvelcli
