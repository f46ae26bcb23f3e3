#include "apps/orvel/session_shell.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <sstream>
#include <system_error>

#include "apps/orvel/interrupt.h"
#include "host/catalogue/mode_catalogue.h"
#include "host/session/session_renderer.h"

namespace orvelcli {

using orvelhost::EditError;
using orvelhost::ParameterState;
using orvelhost::SessionEditor;
using teskcore::serialization::AddToObject;
using teskcore::serialization::AppendToArray;
using teskcore::serialization::JSONArray;
using teskcore::serialization::JSONValue;

namespace {

using Words = std::vector<std::string>;

double ReadNumber(const std::string& text) {
  const std::string_view digits = std::string_view(text).substr(text.starts_with('+') ? 1 : 0);
  double number = 0.0;
  const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (status != std::errc() || end != digits.data() + digits.size() || !std::isfinite(number)) {
    throw EditError("'" + text + "' is no number");
  }
  return number;
}

std::string Join(const Words& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : ", ") + word;
  return text;
}

template <typename List>
JSONValue ToArray(const List& list) {
  JSONValue array = JSONArray();
  for (const auto& entry : list) AppendToArray(array, JSONValue(entry));
  return array;
}

JSONValue Object(const char* key, const JSONValue& value) {
  JSONValue object;
  AddToObject(object, key, value);
  return object;
}

JSONValue Count(std::size_t number) { return JSONValue(static_cast<std::int64_t>(number)); }

// ---- Clips

std::string ModeOf(const orvelhost::SessionClip& held) {
  std::string mode;
  held.clip->GetAdjustmentsMode(mode);
  return orvelhost::IsMode(mode) ? mode : "none";
}

/// The clips of these numbers, for people and as an array.
Answer DescribeClips(const SessionEditor& editor, const std::vector<std::size_t>& numbers) {
  const auto missing = editor.GetSession().FindMissingFiles();
  const auto selection = editor.GetSelection();
  Answer answer{"", JSONArray()};
  for (const std::size_t number : numbers) {
    const auto& held = editor.GetSession().GetClips()[number - 1];
    const bool isMissing = std::ranges::find(missing, number - 1) != missing.end();
    const bool isSelected = std::ranges::find(selection, number) != selection.end();
    orvel::Guid preset;
    held.clip->GetUserPresetGuid(preset);
    answer.text += (answer.text.empty() ? "" : ", ") + std::to_string(number) + " " +
                   held.clip->GetName() + " (" + ModeOf(held) + (isMissing ? ", missing" : "") +
                   (isSelected ? ", selected)" : ")");
    JSONValue entry;
    AddToObject(entry, "clip", Count(number));
    AddToObject(entry, "name", JSONValue(held.clip->GetName()));
    AddToObject(entry, "file", JSONValue(held.source.string()));
    AddToObject(entry, "mode", JSONValue(ModeOf(held)));
    AddToObject(entry, "preset_guid", JSONValue(preset.AsUTF8String()));
    AddToObject(entry, "missing", JSONValue(isMissing));
    AddToObject(entry, "selected", JSONValue(isSelected));
    AppendToArray(answer.json, entry);
  }
  return answer;
}

std::vector<std::size_t> AllNumbers(const SessionEditor& editor) {
  std::vector<std::size_t> numbers;
  for (std::size_t i = 1; i <= editor.GetSession().GetClips().size(); ++i) numbers.push_back(i);
  return numbers;
}

Answer DescribeSelection(const SessionEditor& editor) {
  const auto selection = editor.GetSelection();
  const Answer clips = DescribeClips(editor, selection);
  return {selection.empty() ? "nothing is selected" : clips.text, Object("selected", clips.json)};
}

// ---- Controls

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string ToText(const ParameterState& state) {
  return state.name + "=" + Number(state.value) +
         (state.mixed ? " (" + Number(state.least) + " to " + Number(state.greatest) + ")" : "");
}

JSONValue ToJSON(const ParameterState& state) {
  JSONValue entry;
  AddToObject(entry, "name", JSONValue(state.name));
  AddToObject(entry, "value", JSONValue(state.value));
  AddToObject(entry, "mixed", JSONValue(state.mixed));
  AddToObject(entry, "least", JSONValue(state.least));
  AddToObject(entry, "greatest", JSONValue(state.greatest));
  AddToObject(entry, "enabled", JSONValue(state.enabled));
  AddToObject(entry, "min", JSONValue(state.min));
  AddToObject(entry, "max", JSONValue(state.max));
  return entry;
}

Answer DescribeParameter(const SessionEditor& editor, const std::string& name) {
  const ParameterState state = editor.GetParameter(name);
  return {ToText(state), Object("parameter", ToJSON(state))};
}

// ---- Presets and templates

template <typename T>
Answer DescribeList(const char* key, const std::vector<T>& presets, const std::string& state) {
  Words names;
  JSONValue list = JSONArray();
  for (const auto& preset : presets) {
    names.push_back(orvelhost::ShownName(preset.Name));
    JSONValue entry;
    AddToObject(entry, "name", JSONValue(names.back()));
    AddToObject(entry, "guid", JSONValue(preset.Guid.AsUTF8String()));
    AppendToArray(list, entry);
  }
  Answer answer{"now " + state + "; there are " + Join(names), Object(key, list)};
  AddToObject(answer.json, "current", JSONValue(state));
  return answer;
}

Answer DescribePreset(const char* done, const orvel::UserPreset& preset) {
  Answer answer{std::string(done) + " " + orvelhost::ShownName(preset.Name), {}};
  AddToObject(answer.json, "preset", JSONValue(orvelhost::ShownName(preset.Name)));
  AddToObject(answer.json, "preset_guid", JSONValue(preset.Guid.AsUTF8String()));
  return answer;
}

Answer PresetNow(const SessionEditor& editor) {
  const std::string state = editor.GetPresetState();
  return {"preset " + state, Object("preset", JSONValue(state))};
}

Answer TemplateNow(const SessionEditor& editor) {
  const std::string state = editor.GetTemplateState();
  return {"template " + state, Object("template", JSONValue(state))};
}

}  // namespace

/// What each command does with the words behind its name.
struct ShellCommands {
  static Answer Add(SessionShell& shell, const Words& words) {
    shell.editor_.AddClips({words.begin(), words.end()});
    const Answer clips = DescribeClips(shell.editor_, shell.editor_.GetSelection());
    return {"added " + clips.text, Object("added", clips.json)};
  }

  static Answer Clips(SessionShell& shell, const Words& /*words*/) {
    const Answer clips = DescribeClips(shell.editor_, AllNumbers(shell.editor_));
    return {clips.text.empty() ? "there are no clips" : clips.text, Object("clips", clips.json)};
  }

  static Answer Select(SessionShell& shell, const Words& words) {
    if (words == Words{"all"}) {
      shell.editor_.SelectAll();
    } else if (words == Words{"none"}) {
      shell.editor_.Select({});
    } else {
      std::vector<std::size_t> numbers;
      for (const auto& word : words) {
        std::size_t number = 0;
        const auto [end, status] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (status != std::errc() || end != word.data() + word.size()) {
          throw EditError("'" + word + "' is no number of a clip");
        }
        numbers.push_back(number);
      }
      shell.editor_.Select(numbers);
    }
    return DescribeSelection(shell.editor_);
  }

  static Answer Mode(SessionShell& shell, const Words& words) {
    shell.editor_.SetMode(words.front());
    return {"mode " + words.front(), Object("mode", JSONValue(words.front()))};
  }

  static Answer Preset(SessionShell& shell, const Words& words) {
    shell.editor_.ApplyPreset(words.front());
    return PresetNow(shell.editor_);
  }
  static Answer Presets(SessionShell& shell, const Words& /*words*/) {
    return DescribeList("presets", shell.editor_.GetPresets(), shell.editor_.GetPresetState());
  }
  static Answer SavePreset(SessionShell& shell, const Words& words) {
    return DescribePreset("saved", shell.editor_.SavePreset(words.front()));
  }
  static Answer RemovePreset(SessionShell& shell, const Words& words) {
    return DescribePreset("removed", shell.editor_.RemovePreset(words.front()));
  }

  static Answer Template(SessionShell& shell, const Words& words) {
    shell.editor_.SelectTemplate(words.front());
    return TemplateNow(shell.editor_);
  }
  static Answer Templates(SessionShell& shell, const Words& /*words*/) {
    return DescribeList("templates", shell.editor_.GetTemplates(),
                        shell.editor_.GetTemplateState());
  }
  static Answer SaveTemplate(SessionShell& shell, const Words& words) {
    shell.editor_.SaveTemplate(words.front());
    return TemplateNow(shell.editor_);
  }
  static Answer Configure(SessionShell& shell, const Words& words) {
    shell.editor_.Configure(words[0], words[1], words[2]);
    return TemplateNow(shell.editor_);
  }
  static Answer Revert(SessionShell& shell, const Words& /*words*/) {
    shell.editor_.Revert();
    return TemplateNow(shell.editor_);
  }

  static Answer Show(SessionShell& shell, const Words& words) {
    Answer answer{"", JSONArray()};
    for (const auto& state : shell.editor_.GetParameters(words.empty() ? "" : words.front())) {
      answer.text += (answer.text.empty() ? "" : ", ") + ToText(state);
      AppendToArray(answer.json, ToJSON(state));
    }
    return {answer.text, Object("parameters", answer.json)};
  }
  static Answer Set(SessionShell& shell, const Words& words) {
    shell.editor_.Set(words[0], ReadNumber(words[1]));
    return DescribeParameter(shell.editor_, words[0]);
  }
  static Answer Drag(SessionShell& shell, const Words& words) {
    std::vector<double> values;
    for (std::size_t i = 1; i < words.size(); ++i) values.push_back(ReadNumber(words[i]));
    shell.editor_.Drag(words[0], values);
    return DescribeParameter(shell.editor_, words[0]);
  }
  static Answer Offset(SessionShell& shell, const Words& words) {
    shell.editor_.Offset(words[0], ReadNumber(words[1]));
    return DescribeParameter(shell.editor_, words[0]);
  }

  static Answer Undo(SessionShell& shell, const Words& /*words*/) {
    const std::string name = shell.editor_.Undo();
    return {"undid " + name, Object("undid", JSONValue(name))};
  }
  static Answer Redo(SessionShell& shell, const Words& /*words*/) {
    const std::string name = shell.editor_.Redo();
    return {"redid " + name, Object("redid", JSONValue(name))};
  }
  static Answer History(SessionShell& shell, const Words& /*words*/) {
    const auto& stack = shell.editor_.GetUndoStack();
    const Words names = stack.GetStepNames();
    const auto done = names.begin() + static_cast<std::ptrdiff_t>(stack.GetDoneCount());
    const std::string text = names.empty() ? "nothing was done" : Join({names.begin(), done});
    Answer answer{done == names.end() ? text : text + "; undone: " + Join({done, names.end()}),
                  Object("steps", ToArray(names))};
    AddToObject(answer.json, "done", Count(stack.GetDoneCount()));
    AddToObject(answer.json, "modified", JSONValue(stack.IsModified()));
    return answer;
  }

  static Answer Render(SessionShell& shell, const Words& words) {
    const InterruptScope interrupts;
    JSONValue list = JSONArray();
    Words done;
    Words faults;
    for (const auto& one : orvelhost::RenderSession(shell.host_, words.front(),
                                                    [](double) { return !WasInterrupted(); })) {
      JSONValue entry;
      AddToObject(entry, "clip", Count(one.number));
      AddToObject(entry, "file", JSONValue(one.output.string()));
      if (one.error.empty()) {
        AddToObject(entry, "notes", ToArray(one.notes));
        done.push_back(one.output.string());
      } else {
        AddToObject(entry, "error", JSONValue(one.error));
        faults.push_back(one.error);
      }
      AppendToArray(list, entry);
    }
    Answer answer{done.empty() ? "nothing was rendered" : "rendered " + Join(done),
                  Object("rendered", list)};
    if (!faults.empty()) {
      answer.text += "; " + Join(faults);
      AddToObject(answer.json, "error", JSONValue(Join(faults)));
      answer.hasFailed = true;
    }
    return answer;
  }

  static Answer Save(SessionShell& shell, const Words& words) {
    const std::filesystem::path file =
        words.empty() ? shell.file_ : std::filesystem::path(words.front());
    if (file.empty()) throw EditError("the session has no file yet; give one");
    shell.editor_.Save(file);
    shell.file_ = std::filesystem::absolute(file);
    return {"saved " + file.string(), Object("saved", JSONValue(file.string()))};
  }
  static Answer Open(SessionShell& shell, const Words& words) {
    shell.editor_.Open(words.front());
    shell.file_ = std::filesystem::absolute(words.front());
    const auto& session = shell.editor_.GetSession();
    Words missing;
    for (const std::size_t index : session.FindMissingFiles()) {
      missing.push_back(session.GetClips()[index].source.string());
    }
    const std::size_t count = session.GetClips().size();
    Answer answer{"opened " + words.front() + ": " + std::to_string(count) +
                      (count == 1 ? " clip" : " clips") +
                      (missing.empty() ? "" : "; missing: " + Join(missing)),
                  Object("opened", JSONValue(words.front()))};
    AddToObject(answer.json, "clips", Count(count));
    AddToObject(answer.json, "missing", ToArray(missing));
    return answer;
  }
  static Answer Quit(SessionShell& shell, const Words& /*words*/) {
    shell.isOver_ = true;
    return {};
  }
  static Answer Help(SessionShell& shell, const Words& words);
};

namespace {

constexpr std::size_t kMany = 1000000;

struct ShellCommand {
  std::string_view name;
  std::string_view arguments;
  std::size_t least;  // words behind the name
  std::size_t most;
  Answer (*run)(SessionShell& shell, const Words& words);
  std::string_view help;
};

// clang-format off
constexpr ShellCommand kCommands[] = {
  // name            arguments                  least most   run                           help
  { "add",           "FILE...",                 1,    kMany, &ShellCommands::Add,          "adds clips of audio files, and selects them" },
  { "clips",         "",                        0,    0,     &ShellCommands::Clips,        "lists the clips" },
  { "select",        "N...|all|none",           1,    kMany, &ShellCommands::Select,       "selects clips by their numbers" },
  { "mode",          "MODE|none",               1,    1,     &ShellCommands::Mode,         "gives the clips a mode, with its default preset" },
  { "preset",        "NAME",                    1,    1,     &ShellCommands::Preset,       "gives the clips the values of a preset" },
  { "presets",       "",                        0,    0,     &ShellCommands::Presets,      "lists the presets of the mode and template" },
  { "save-preset",   "NAME",                    1,    1,     &ShellCommands::SavePreset,   "saves the clips' values as a preset" },
  { "remove-preset", "NAME",                    1,    1,     &ShellCommands::RemovePreset, "deletes a preset" },
  { "template",      "NAME",                    1,    1,     &ShellCommands::Template,     "configures the mode by a template" },
  { "templates",     "",                        0,    0,     &ShellCommands::Templates,    "lists the templates of the mode" },
  { "save-template", "NAME",                    1,    1,     &ShellCommands::SaveTemplate, "saves the mode's settings as a template" },
  { "configure",     "SECTION KEY VALUE",       3,    3,     &ShellCommands::Configure,    "changes a setting of the template" },
  { "revert",        "",                        0,    0,     &ShellCommands::Revert,       "drops changed settings of the template" },
  { "show",          "[SECTION]",               0,    1,     &ShellCommands::Show,         "shows the controls" },
  { "set",           "SECTION.PARAM VALUE",     2,    2,     &ShellCommands::Set,          "sets a control, and nothing else" },
  { "drag",          "SECTION.PARAM VALUE...",  2,    kMany, &ShellCommands::Drag,         "sets a control again and again, as one step" },
  { "offset",        "SECTION.PARAM DELTA",     2,    2,     &ShellCommands::Offset,       "moves each clip's own value" },
  { "undo",          "",                        0,    0,     &ShellCommands::Undo,         "takes the last step back" },
  { "redo",          "",                        0,    0,     &ShellCommands::Redo,         "takes it again" },
  { "history",       "",                        0,    0,     &ShellCommands::History,      "lists the steps" },
  { "render",        "DIR",                     1,    1,     &ShellCommands::Render,       "renders every clip to a WAV in a folder" },
  { "save",          "[FILE]",                  0,    1,     &ShellCommands::Save,         "saves the session" },
  { "open",          "FILE",                    1,    1,     &ShellCommands::Open,         "opens another session" },
  { "help",          "",                        0,    0,     &ShellCommands::Help,         "lists these commands" },
  { "quit",          "",                        0,    0,     &ShellCommands::Quit,         "ends" },
};
// clang-format on

std::string Usage(const ShellCommand& command) {
  return std::string(command.name) + (command.arguments.empty() ? "" : " ") +
         std::string(command.arguments);
}

}  // namespace

Answer ShellCommands::Help(SessionShell& /*shell*/, const Words& /*words*/) {
  Words usages;
  for (const auto& command : kCommands) usages.push_back(Usage(command));
  return {Join(usages), Object("commands", ToArray(usages))};
}

Answer SessionShell::Run(const std::vector<std::string>& words) {
  if (words.empty()) return {};
  const auto* command = std::ranges::find(kCommands, words.front(), &ShellCommand::name);
  if (command == std::end(kCommands)) {
    throw EditError("there is no command '" + words.front() + "'; help lists them");
  }
  const Words arguments(words.begin() + 1, words.end());
  if (arguments.size() < command->least || arguments.size() > command->most) {
    throw EditError("write " + Usage(*command));
  }
  return command->run(*this, arguments);
}

std::vector<std::string> SessionShell::Complete(const std::vector<std::string>& words) const {
  Words candidates;
  if (words.size() <= 1) {
    for (const auto& command : kCommands) candidates.emplace_back(command.name);
    return candidates;
  }
  try {
    const std::string& command = words.front();
    if (command == "mode") {
      for (const auto& mode : orvelhost::GetModes()) candidates.push_back(mode.modeID);
      candidates.emplace_back("none");
    } else if (words.size() == 2 &&
               (command == "set" || command == "drag" || command == "offset")) {
      for (const auto& state : editor_.GetParameters("")) candidates.push_back(state.name);
    } else if (command == "preset" || command == "remove-preset") {
      for (const auto& preset : editor_.GetPresets()) {
        candidates.push_back(orvelhost::ShownName(preset.Name));
      }
    }
  } catch (const std::runtime_error&) {
    // Nothing fits while there is no mode.
  }
  return candidates;
}

std::string SessionShell::DescribeCommands() {
  constexpr std::size_t kWidth = 31;
  std::string text;
  for (const auto& command : kCommands) {
    std::string usage = "  " + Usage(command);
    usage.resize(std::max(usage.size() + 2, kWidth), ' ');
    text += usage + std::string(command.help) + "\n";
  }
  return text;
}

}  // namespace orvelcli
