#include "apps/orvel/interrupt.h"
#include "apps/orvel/shell_verbs.h"
#include "host/audio/audio_error.h"
#include "host/catalogue/json_values.h"
#include "host/render/output_folder.h"
#include "host/render/render_batch.h"
#include "host/render/session_requests.h"
#include "host/session/session_document.h"

namespace orvelcli {

using orvelhost::MakeArray;
using orvelhost::MakeObject;
using teskcore::serialization::AddToObject;

Answer Undo(ShellState& state, const Words& /*words*/) {
  const std::string name = state.editor.Undo();
  return MakeAnswer("undid " + name, "undid", name);
}

Answer Redo(ShellState& state, const Words& /*words*/) {
  const std::string name = state.editor.Redo();
  return MakeAnswer("redid " + name, "redid", name);
}

Answer ShowHistory(ShellState& state, const Words& /*words*/) {
  const auto& stack = state.editor.GetUndoStack();
  const Words names = stack.GetStepNames();
  const auto done = names.begin() + static_cast<std::ptrdiff_t>(stack.GetDoneCount());
  const std::string text = names.empty() ? "nothing was done" : Join({names.begin(), done});
  return {done == names.end() ? text : text + "; undone: " + Join({done, names.end()}),
          MakeObject({{"steps", MakeArray(names)},
                      {"done", stack.GetDoneCount()},
                      {"modified", stack.IsModified()}})};
}

Answer RenderClips(ShellState& state, const Words& words) {
  const InterruptScope interrupts;
  const auto goOn = [](const auto&...) { return !WasInterrupted(); };
  if (words.front().empty()) throw orvelhost::EditError("give a folder");
  if (state.editor.GetSession().GetClips().empty()) {
    throw orvelhost::EditError("there are no clips to render");
  }
  const orvelhost::OutputFolder folder(words.front());
  const auto requests = orvelhost::MakeRequests(state.editor.GetSession(), words.front(), goOn);
  const auto outcomes = orvelhost::RenderBatch(state.host, requests, 1, {{}, goOn});
  Words done;
  Words faults;
  std::string notes;
  teskcore::serialization::JSONValue list = teskcore::serialization::JSONArray();
  for (std::size_t index = 0; index < requests.size(); ++index) {
    const orvelhost::RenderOutcome& outcome = outcomes[index];
    const std::string file = requests[index].output.string();
    auto entry = MakeObject({{"clip", index + 1}, {"file", file}});
    if (outcome.status == orvelhost::RenderOutcome::kDone) {
      AddToObject(entry, "notes", MakeArray(outcome.report.notes));
      for (const auto& note : outcome.report.notes) {
        notes.append("; note: ").append(orvelhost::Printable(file)).append(": ").append(note);
      }
      done.push_back(file);
    } else {
      faults.push_back(outcome.error);
      AddToObject(entry, "error", outcome.error);
    }
    teskcore::serialization::AppendToArray(list, entry);
  }
  Answer answer = MakeAnswer(done.empty() ? "nothing was rendered" : "rendered " + Join(done),
                             "rendered", list);
  if (!faults.empty()) {
    answer.text += "; " + Join(faults);
    AddToObject(answer.json, "error", Join(faults));
    answer.hasFailed = true;
  }
  answer.text += notes;
  return answer;
}

Answer SaveSession(ShellState& state, const Words& words) {
  const std::filesystem::path file =
      words.empty() ? state.file : std::filesystem::path(words.front());
  if (file.empty()) throw orvelhost::EditError("the session has no file yet; give one");
  orvelhost::CheckCanBeReplaced(file);  // it may have become a link to a recording meanwhile
  state.editor.Save(file);
  state.file = std::filesystem::absolute(file);
  return MakeAnswer("saved " + file.string(), "saved", file.string());
}

Answer OpenSession(ShellState& state, const Words& words) {
  state.editor.Open(words.front());
  state.file = std::filesystem::absolute(words.front());
  const auto& session = state.editor.GetSession();
  Words missing;
  for (const std::size_t index : session.FindMissingFiles()) {
    missing.push_back(session.GetClips()[index].source.string());
  }
  const std::size_t count = session.GetClips().size();
  return {
      "opened " + words.front() + ": " + std::to_string(count) + (count == 1 ? " clip" : " clips") +
          (missing.empty() ? "" : "; missing: " + Join(missing)),
      MakeObject({{"opened", words.front()}, {"clips", count}, {"missing", MakeArray(missing)}})};
}

Answer Quit(ShellState& state, const Words& /*words*/) {
  state.isOver = true;
  return {};
}

}  // namespace orvelcli
