#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orvel/shell_answer.h"
#include "host/editor/session_editor.h"

namespace orvelcli {

/// What the verbs of the shell work on.
struct ShellState {
  const orvelhost::Host& host;
  orvelhost::SessionEditor editor{host};
  std::filesystem::path file = {};  ///< of the session; empty until there is one
  bool isOver = false;
};

/// The words behind a verb.
using Words = std::vector<std::string>;

/// A command of the shell.
struct ShellVerb {
  std::string_view name;
  std::string_view arguments;  ///< as the help shows them
  std::size_t least;           ///< how many words stand behind it
  std::size_t most;
  bool isMeasured;  ///< what is measured on clips is in the answer, or in the file
  /// Raises std::runtime_error for what cannot be done; all is as it was then.
  Answer (*run)(ShellState& state, const Words& words);
  std::string_view help;
};

/// Adds "analysis" to the answer: whether what the selected clips' sections have to know of them is
/// "running", "done", or "none" because no section asked yet, or nothing could be measured.
void AddAnalysis(const ShellState& state, Answer& answer);

/// All of them, in the order of the help.
std::span<const ShellVerb> GetShellVerbs();

/// "set SECTION.PARAM VALUE".
std::string UsageOf(const ShellVerb& verb);

// What they do, by subject: shell_clip_verbs.cpp, shell_preset_verbs.cpp, shell_control_verbs.cpp,
// shell_document_verbs.cpp.

Answer AddClips(ShellState& state, const Words& words);
Answer ListClips(ShellState& state, const Words& words);
Answer SelectClips(ShellState& state, const Words& words);
Answer SetMode(ShellState& state, const Words& words);

Answer ApplyPreset(ShellState& state, const Words& words);
Answer ListPresets(ShellState& state, const Words& words);
Answer SavePreset(ShellState& state, const Words& words);
Answer RemovePreset(ShellState& state, const Words& words);
Answer SelectTemplate(ShellState& state, const Words& words);
Answer ListTemplates(ShellState& state, const Words& words);
Answer SaveTemplate(ShellState& state, const Words& words);
Answer Configure(ShellState& state, const Words& words);
Answer Revert(ShellState& state, const Words& words);

Answer ShowControls(ShellState& state, const Words& words);
Answer SetControl(ShellState& state, const Words& words);
Answer DragControl(ShellState& state, const Words& words);
Answer OffsetControl(ShellState& state, const Words& words);

Answer Undo(ShellState& state, const Words& words);
Answer Redo(ShellState& state, const Words& words);
Answer ShowHistory(ShellState& state, const Words& words);
Answer RenderClips(ShellState& state, const Words& words);
Answer SaveSession(ShellState& state, const Words& words);
Answer OpenSession(ShellState& state, const Words& words);
Answer Quit(ShellState& state, const Words& words);

}  // namespace orvelcli
