#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "apps/orvel/shell_verbs.h"
#include "host/catalogue/json_values.h"
#include "host/catalogue/mode_catalogue.h"

namespace orvelcli {
namespace {

using orvelhost::EditError;
using orvelhost::SessionEditor;
using teskcore::serialization::AddToObject;
using teskcore::serialization::AppendToArray;

std::string ModeOf(const orvelhost::SessionClip& held) {
  std::string mode;
  held.clip->GetAdjustmentsMode(mode);
  return orvelhost::IsMode(mode) ? mode : "none";
}

const char* StatusName(orvelhost::AnalysisStatus status) {
  return status == orvelhost::kAnalysis_Running ? "running"
         : status == orvelhost::kAnalysis_Done  ? "done"
                                                : "none";
}

std::string MeasuringText(const orvelhost::Session& session, const orvelhost::SessionClip& held) {
  if (held.clip->MeasurementStatus() != orvelhost::kAnalysis_Running) return "";
  const double done = session.GetMeasured(held.clip);
  return ", measuring" +
         (done < 0.0 ? "" : " " + orvelhost::ShownNumber(std::floor(100.0 * done)) + " %");
}

/// The clips of these numbers, as an array under the key.
Answer DescribeClips(const SessionEditor& editor, const std::vector<std::size_t>& numbers,
                     const char* key, bool withAnalysis = false) {
  const auto missing = editor.GetSession().FindMissingFiles();
  const auto selection = editor.GetSelection();
  Words lines;
  teskcore::serialization::JSONValue list = teskcore::serialization::JSONArray();
  for (const std::size_t number : numbers) {
    const auto& held = editor.GetSession().GetClips()[number - 1];
    const bool isMissing = std::ranges::binary_search(missing, number - 1);
    const bool isSelected = std::ranges::binary_search(selection, number);
    orvel::Guid preset;
    held.clip->GetUserPresetGuid(preset);
    lines.push_back(std::to_string(number) + " " + held.clip->GetName() + " (" + ModeOf(held) +
                    (isMissing ? ", missing" : "") +
                    (withAnalysis ? MeasuringText(editor.GetSession(), held) : "") +
                    (isSelected ? ", selected)" : ")"));
    auto entry = orvelhost::MakeObject({{"clip", number},
                                        {"name", held.clip->GetName()},
                                        {"file", held.source.string()},
                                        {"mode", ModeOf(held)},
                                        {"preset_guid", preset.AsUTF8String()},
                                        {"missing", isMissing},
                                        {"selected", isSelected}});
    if (withAnalysis) AddToObject(entry, "analysis", StatusName(held.clip->MeasurementStatus()));
    AppendToArray(list, entry);
  }
  return MakeAnswer(Join(lines), key, list);
}

std::size_t ReadClipNumber(const std::string& word) {
  std::size_t number = 0;
  const auto [end, status] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (status != std::errc() || end != word.data() + word.size()) {
    throw EditError("'" + word + "' is no number of a clip");
  }
  return number;
}

}  // namespace

Answer AddClips(ShellState& state, const Words& words) {
  state.editor.AddClips({words.begin(), words.end()});
  Answer answer = DescribeClips(state.editor, state.editor.GetSelection(), "added");
  answer.text.insert(0, "added ");
  return answer;
}

Answer ListClips(ShellState& state, const Words& /*words*/) {
  Answer answer = DescribeClips(state.editor, state.editor.GetNumbers(), "clips", true);
  if (answer.text.empty()) answer.text = "there are no clips";
  return answer;
}

Answer SelectClips(ShellState& state, const Words& words) {
  std::vector<std::size_t> numbers;
  if (words == Words{"all"}) {
    numbers = state.editor.GetNumbers();
  } else if (words != Words{"none"}) {
    std::ranges::transform(words, std::back_inserter(numbers), &ReadClipNumber);
  }
  state.editor.Select(numbers);
  Answer answer = DescribeClips(state.editor, state.editor.GetSelection(), "selected");
  if (answer.text.empty()) answer.text = "nothing is selected";
  return answer;
}

Answer SetMode(ShellState& state, const Words& words) {
  state.editor.SetMode(words.front());
  Answer answer = MakeAnswer("mode " + words.front(), "mode", words.front());
  AddAnalysis(state, answer);
  return answer;
}

void AddAnalysis(const ShellState& state, Answer& answer) {
  const auto& session = state.editor.GetSession();
  bool isRunning = false;
  bool isDone = true;
  for (const std::size_t index : session.GetSelection()) {
    const auto status = session.GetClips()[index].clip->MeasurementStatus();
    isRunning |= status == orvelhost::kAnalysis_Running;
    isDone &= status == orvelhost::kAnalysis_Done;
  }
  if (isRunning) answer.text += " (measuring)";
  AddToObject(answer.json, "analysis",
              StatusName(isRunning ? orvelhost::kAnalysis_Running
                         : isDone  ? orvelhost::kAnalysis_Done
                                   : orvelhost::kAnalysis_None));
}

}  // namespace orvelcli
