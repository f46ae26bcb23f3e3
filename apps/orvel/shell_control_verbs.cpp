#include "apps/orvel/shell_verbs.h"
#include "host/catalogue/json_values.h"
#include "host/catalogue/setting.h"

namespace orvelcli {
namespace {

using orvelhost::ParameterState;
using orvelhost::ShownNumber;

double ReadNumber(const std::string& text) {
  double number = 0.0;
  if (!orvelhost::ParseNumber(text, number)) {
    throw orvelhost::EditError("'" + text + "' is no number");
  }
  return number;
}

std::string ToText(const ParameterState& state) {
  return state.name + "=" + ShownNumber(state.value) +
         (state.mixed ? " (" + ShownNumber(state.least) + " to " + ShownNumber(state.greatest) + ")"
                      : "");
}

teskcore::serialization::JSONValue ToJSON(const ParameterState& state) {
  return orvelhost::MakeObject({{"name", state.name},
                                {"value", state.value},
                                {"mixed", state.mixed},
                                {"least", state.least},
                                {"greatest", state.greatest},
                                {"enabled", state.enabled},
                                {"min", state.min},
                                {"max", state.max}});
}

Answer DescribeControl(const ShellState& state, const std::string& name) {
  const ParameterState now = state.editor.Controls().Get(name);
  Answer answer = MakeAnswer(ToText(now), "parameter", ToJSON(now));
  AddAnalysis(state, answer);
  return answer;
}

}  // namespace

Answer ShowControls(ShellState& state, const Words& words) {
  const auto controls = state.editor.Controls().GetAll(words.empty() ? "" : words.front());
  Words texts;
  for (const ParameterState& control : controls) texts.push_back(ToText(control));
  Answer answer = MakeAnswer(Join(texts), "parameters", orvelhost::MakeArray(controls, &ToJSON));
  AddAnalysis(state, answer);
  return answer;
}

Answer SetControl(ShellState& state, const Words& words) {
  state.editor.Controls().Set(words[0], ReadNumber(words[1]));
  return DescribeControl(state, words[0]);
}

Answer DragControl(ShellState& state, const Words& words) {
  std::vector<double> values;
  for (std::size_t i = 1; i < words.size(); ++i) values.push_back(ReadNumber(words[i]));
  state.editor.Controls().Drag(words[0], values);
  return DescribeControl(state, words[0]);
}

Answer OffsetControl(ShellState& state, const Words& words) {
  state.editor.Controls().Offset(words[0], ReadNumber(words[1]));
  return DescribeControl(state, words[0]);
}

}  // namespace orvelcli
