#include "apps/orvel/shell_verbs.h"

#include <limits>

#include "host/catalogue/json_values.h"

namespace orvelcli {
namespace {

Answer Help(ShellState& /*state*/, const Words& /*words*/) {
  Words usages;
  for (const ShellVerb& verb : GetShellVerbs()) usages.push_back(UsageOf(verb));
  return MakeAnswer(Join(usages), "commands", orvelhost::MakeArray(usages));
}

constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();

// clang-format off
constexpr ShellVerb kVerbs[] = {
  // name            arguments                  least most   isMeasured  run           help
  { "add",           "FILE...",                 1,    kMany, false,   &AddClips,       "adds clips of audio files, and selects them" },
  { "clips",         "",                        0,    0,     true,    &ListClips,      "lists the clips" },
  { "select",        "N...|all|none",           1,    kMany, false,   &SelectClips,    "selects clips by their numbers" },
  { "mode",          "MODE|none",               1,    1,     false,   &SetMode,        "gives the clips a mode, with its default preset" },
  { "preset",        "NAME",                    1,    1,     false,   &ApplyPreset,    "gives the clips the values of a preset" },
  { "presets",       "",                        0,    0,     false,   &ListPresets,    "lists the presets of the mode and template" },
  { "save-preset",   "NAME",                    1,    1,     false,   &SavePreset,     "saves the clips' values as a preset" },
  { "remove-preset", "NAME",                    1,    1,     false,   &RemovePreset,   "deletes a preset" },
  { "template",      "NAME",                    1,    1,     false,   &SelectTemplate, "configures the mode by a template" },
  { "templates",     "",                        0,    0,     false,   &ListTemplates,  "lists the templates of the mode" },
  { "save-template", "NAME",                    1,    1,     false,   &SaveTemplate,   "saves the mode's settings as a template" },
  { "configure",     "SECTION KEY VALUE",       3,    3,     false,   &Configure,      "changes a setting; controls keep their place in its range" },
  { "revert",        "",                        0,    0,     false,   &Revert,         "drops changed settings of the template" },
  { "show",          "[SECTION]",               0,    1,     true,    &ShowControls,   "shows the controls" },
  { "set",           "SECTION.PARAM VALUE",     2,    2,     false,   &SetControl,     "sets a control, and nothing else" },
  { "drag",          "SECTION.PARAM VALUE...",  2,    kMany, false,   &DragControl,    "sets a control again and again, as one step" },
  { "offset",        "SECTION.PARAM DELTA",     2,    2,     false,   &OffsetControl,  "moves each clip's own value" },
  { "undo",          "",                        0,    0,     false,   &Undo,           "takes the last step back" },
  { "redo",          "",                        0,    0,     false,   &Redo,           "takes it again" },
  { "history",       "",                        0,    0,     false,   &ShowHistory,    "lists the steps" },
  { "render",        "DIR",                     1,    1,     false,   &RenderClips,    "renders every clip to a WAV in a folder" },
  { "save",          "[FILE]",                  0,    1,     true,    &SaveSession,    "saves the session" },
  { "open",          "FILE",                    1,    1,     false,   &OpenSession,    "opens another session" },
  { "help",          "",                        0,    0,     false,   &Help,           "lists these commands" },
  { "quit",          "",                        0,    0,     false,   &Quit,           "ends" },
};
// clang-format on

}  // namespace

std::span<const ShellVerb> GetShellVerbs() { return kVerbs; }

std::string UsageOf(const ShellVerb& verb) {
  return std::string(verb.name) + (verb.arguments.empty() ? "" : " ") + std::string(verb.arguments);
}

}  // namespace orvelcli
