#include "apps/orvel/preset_commands.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>

#include "apps/orvel/command.h"
#include "apps/orvel/exit_code.h"
#include "host/audio/audio_error.h"
#include "host/catalogue/json_values.h"
#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/preset_import.h"
#include "host/catalogue/preset_store.h"
#include "host/catalogue/preset_table.h"
#include "host/catalogue/preset_values.h"
#include "host/session/text_file.h"

namespace orvelcli {
namespace {

using orvelhost::ImportOutcome;
using orvelhost::PresetStore;
using orvelhost::Quoted;
using teskcore::serialization::AddToObject;
using teskcore::serialization::AppendToArray;
using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONValue;

/// The preset that a command is about, narrowed by --mode and --template.
orvel::UserPreset FindPreset(const PresetStore& store, const CommandLine& line,
                             const std::string& name,
                             orvelhost::Capitals capitals = orvelhost::Capitals::kAny) {
  const std::string mode = CheckMode(line.Value("mode"));
  const std::string configuration = line.Value("template");
  const orvel::Guid config =
      configuration.empty() ? orvel::Guid() : store.FindTemplate({configuration, mode, {}}).Guid;
  return store.FindPreset({name, mode, config, capitals});
}

void PrintPreset(const CommandLine& line, const PresetStore& store, const char* done,
                 const orvel::UserPreset& preset) {
  if (line.AsJSON()) {
    PrintJSON(orvelhost::ToJSON(preset, store));
  } else if (!line.IsQuiet()) {
    std::cout << done << " " << store.Describe(preset) << "\n";
  }
}

int List(const Command& command, const CommandLine& line) {
  if (line.Words().size() > 1) throw UsageError("unexpected '" + line.Words()[1] + "'");
  const orvelhost::Host host;
  const std::string mode = CheckMode(line.Words().empty() ? "" : line.Words().front());
  const PresetStore store(host);
  PrintNotes(command, line, host);
  PrintList(
      line, store.GetPresets(mode),
      [&store](const auto& one) { return orvelhost::ToText(one, store) + "\n"; },
      [&store](const auto& one) { return orvelhost::ToJSON(one, store); });
  return kExit_Success;
}

/// The preset that --from names: of those of that name the one under --template, where there is
/// one.
orvel::UserPreset FindStart(const PresetStore& store, const CommandLine& line) {
  const std::string name = line.Value("from");
  if (line.Has("template")) {
    try {
      return FindPreset(store, line, name);
    } catch (const orvelhost::PresetError&) {  // it may be another template's
    }
  }
  return store.FindPreset({name, line.Value("mode"), {}});
}

/// What the new preset starts from: the preset that was named, else the template's default.
orvel::UserPresetData GetStart(const PresetStore& store, const CommandLine& line,
                               const orvel::ConfigPreset& configuration) {
  if (line.Has("from")) {
    orvel::UserPresetData data = FindStart(store, line).PresetData;
    if (line.Has("template")) data.Config = configuration.Guid;
    return data;
  }
  for (const auto& preset : store.GetPresets(configuration.PresetData.ModeID)) {
    if (preset.PresetData.Config == configuration.Guid && orvelhost::IsDefaultName(preset.Name)) {
      return preset.PresetData;
    }
  }
  return orvelhost::MakeDefaultValues(configuration);
}

int Save(const Command& /*command*/, const CommandLine& line) {
  if (line.Words().size() != 1) throw UsageError("give one name");
  const orvelhost::Host host;
  const std::string mode = CheckMode(line.Value("mode"));
  if (mode.empty()) throw UsageError("give a mode with --mode: " + orvelhost::ListModes());
  const PresetStore store(host);
  const std::string templateName = line.Value("template");
  const orvel::ConfigPreset configuration = templateName.empty()
                                                ? store.GetFactoryTemplate(mode)
                                                : store.FindTemplate({templateName, mode, {}});
  orvel::UserPreset preset;
  preset.Guid = orvel::Guid::CreateUnique();
  preset.Name = line.Words().front();
  preset.PresetData = GetStart(store, line, configuration);
  std::string fault;
  if (!orvelhost::SetPresetValues(line.Values("set"), store.GetTemplate(preset), preset.PresetData,
                                  fault)) {
    throw UsageError(fault);
  }
  // Clips that refer to the preset that is replaced go on to do so.
  for (const auto& other : store.FindReplaced(preset)) {
    if (line.Has("force") && other.Name == preset.Name && !store.IsFactory(other)) {
      preset.Guid = other.Guid;
    }
  }
  store.Save(preset, line.Has("force"));
  PrintPreset(line, store, "saved", preset);
  return kExit_Success;
}

int Remove(const Command& /*command*/, const CommandLine& line) {
  if (line.Words().size() != 1) throw UsageError("give one preset");
  const orvelhost::Host host;
  const PresetStore store(host);
  // What cannot be taken back is done to no preset that only sounds alike.
  const orvel::UserPreset preset =
      FindPreset(store, line, line.Words().front(), orvelhost::Capitals::kAsWritten);
  store.Remove(preset);
  PrintPreset(line, store, "removed", preset);
  return kExit_Success;
}

int Export(const Command& /*command*/, const CommandLine& line) {
  if (line.Words().empty()) throw UsageError("give a preset");
  const std::filesystem::path output = line.Value("output");
  std::error_code error;
  if (!line.Has("force") && std::filesystem::exists(output, error)) {
    throw UsageError(Quoted(output) + " exists already");
  }
  const orvelhost::Host host;
  const PresetStore store(host);
  std::vector<orvel::UserPreset> presets;
  for (const std::string& name : line.Words()) {
    const orvel::UserPreset preset = FindPreset(store, line, name);
    const auto isIt = [&preset](const orvel::UserPreset& other) {
      return other.Guid == preset.Guid && other.PresetData.Config == preset.PresetData.Config;
    };
    // An import would refuse the second.
    if (std::ranges::none_of(presets, isIt)) presets.push_back(preset);
  }
  std::string text;
  if (!orvel::WritePresets(presets, text)) {
    throw orvelhost::PresetError("a value is not finite");
  }
  if (output.empty()) {
    std::cout << text;
  } else {
    orvelhost::WriteTextFile(output, text);
  }
  return kExit_Success;
}

const char* OutcomeName(ImportOutcome outcome) {
  switch (outcome) {
    case ImportOutcome::kImported:
      return "imported";
    case ImportOutcome::kReplaced:
      return "replaced";
    case ImportOutcome::kUnchanged:
      return "unchanged";
    case ImportOutcome::kRefused:
      return "refused";
  }
  return "";
}

JSONValue ToJSON(const std::string& file, const orvelhost::ImportedPreset& imported) {
  JSONValue entry =
      orvelhost::MakeObject({{"file", file},
                             {"name", orvelhost::ShownName(imported.preset.Name)},
                             {"guid", imported.preset.Guid.AsUTF8String()},
                             {"mode", imported.preset.PresetData.ModeID},
                             {"outcome", std::string(OutcomeName(imported.outcome))}});
  if (!imported.reason.empty()) AddToObject(entry, "reason", imported.reason);
  return entry;
}

void PrintImported(const Command& command, const CommandLine& line, const std::string& file,
                   const PresetStore& store, const orvelhost::ImportedPreset& imported) {
  const std::string text = std::string(OutcomeName(imported.outcome)) + " " +
                           store.Describe(imported.preset) +
                           (imported.reason.empty() ? "" : ": " + imported.reason);
  if (imported.outcome == ImportOutcome::kRefused) {
    std::cerr << command.name << ": " << Quoted(file) << ": " << text << "\n";
  } else if (!line.IsQuiet() && !line.AsJSON()) {
    std::cout << text << "\n";
  }
}

int Import(const Command& command, const CommandLine& line) {
  if (line.Words().empty()) throw UsageError("give a file");
  const orvelhost::Host host;
  const PresetStore store(host);
  int exitCode = kExit_Success;
  JSONValue list = JSONArray();
  for (const std::string& file : line.Words()) {
    try {
      const std::string text = orvelhost::ReadTextFile(file);
      for (const auto& imported : orvelhost::ImportPresets(text, store, line.Has("force"))) {
        PrintImported(command, line, file, store, imported);
        AppendToArray(list, ToJSON(file, imported));
        if (imported.outcome == ImportOutcome::kRefused) exitCode = kExit_Failed;
      }
    } catch (const orvelhost::PresetError& error) {
      std::cerr << command.name << ": " << Quoted(file) << ": " << error.what() << "\n";
      exitCode = kExit_Failed;
    } catch (const std::exception& error) {
      std::cerr << command.name << ": " << error.what() << "\n";
      exitCode = kExit_Failed;
    }
  }
  if (line.AsJSON()) PrintJSON(list);
  return exitCode;
}

const OptionSyntax kMode = {"mode", 'm', true};
const OptionSyntax kTemplate = {"template", 0, true};
const OptionSyntax kForce = {"force", 'f', false};

const Command kList = {
    "orvel presets",
    "Usage: orvel presets [MODE] [--json]\n"
    "       orvel presets save NAME --mode MODE ...\n"
    "       orvel presets remove PRESET ...\n"
    "       orvel presets export PRESET... ...\n"
    "       orvel presets import FILE... ...\n"
    "\n"
    "Lists the presets in your preset folder, of all modes or of one, with the values that they\n"
    "set. Each of the others has a --help of its own.\n",
    {},
    &List};

const Command kActions[] = {
    {"orvel presets save",
     "Usage: orvel presets save NAME --mode MODE [--from PRESET] [--set SECTION.PARAMETER=N]...\n"
     "\n"
     "Saves a preset: the values of another one, changed as you say.\n"
     "\n"
     "  -m, --mode MODE        the mode (see orvel modes)\n"
     "      --from PRESET      starts from this preset, by name or guid; else from the default\n"
     "  -s, --set NAME=N       sets a value in its unit (see orvel sections MODE), and switches "
     "its\n"
     "                         control on unless the control's switch is set, too\n"
     "      --template NAME    under this template, not under that of the library or of PRESET\n"
     "  -f, --force            replaces a preset of this name, unless it comes with the library\n"
     "  -j, --json             prints what was saved\n"
     "  -q, --quiet            prints nothing but errors\n",
     {kMode, {"from", 0, true}, {"set", 's', true}, kTemplate, kForce},
     &Save},
    {"orvel presets remove",
     "Usage: orvel presets remove PRESET [--mode MODE] [--template NAME]\n"
     "\n"
     "Deletes a preset, given by its name or its guid. Those that come with the library stay.\n"
     "\n"
     "  -m, --mode MODE        only looks for it in this mode\n"
     "      --template NAME    only looks for it under this template\n"
     "  -j, --json             prints what was removed\n"
     "  -q, --quiet            prints nothing but errors\n",
     {kMode, kTemplate},
     &Remove},
    {"orvel presets export",
     "Usage: orvel presets export PRESET... [-o FILE] [--mode MODE] [--template NAME]\n"
     "\n"
     "Writes presets, given by their names or guids, as one JSON document for orvel presets "
     "import.\n"
     "\n"
     "  -o, --output FILE      the file to write; else it is printed\n"
     "  -m, --mode MODE        only looks for them in this mode\n"
     "      --template NAME    only looks for them under this template\n"
     "  -f, --force            replaces FILE when it exists\n",
     {kMode, kTemplate, kForce, {"output", 'o', true}},
     &Export},
    {"orvel presets import",
     "Usage: orvel presets import FILE... [--force]\n"
     "\n"
     "Saves the presets of each file: one, or an array of them. Of a file that is broken nothing "
     "is\n"
     "saved; a preset of a name or guid that is there already is refused, and the exit code is 1.\n"
     "\n"
     "  -f, --force            replaces presets of these names and guids, unless they come with "
     "the\n"
     "                         library\n"
     "  -j, --json             prints what became of each\n"
     "  -q, --quiet            prints nothing but errors\n",
     {kForce},
     &Import},
};

}  // namespace

int RunPresets(int argc, char** argv) {
  const std::string action = argc > 1 ? argv[1] : "";
  const auto found = std::ranges::find(kActions, "orvel presets " + action, &Command::name);
  return found == std::end(kActions) ? RunCommand(kList, argc, argv)
                                     : RunCommand(*found, argc - 1, argv + 1);
}

}  // namespace orvelcli
