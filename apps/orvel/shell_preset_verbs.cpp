#include "apps/orvel/shell_verbs.h"
#include "host/catalogue/json_values.h"
#include "host/catalogue/mode_catalogue.h"

namespace orvelcli {
namespace {

using orvelhost::ShownName;

template <typename T>
Answer DescribeList(const char* key, const std::vector<T>& presets, const std::string& state) {
  Words names;
  for (const auto& preset : presets) names.push_back(ShownName(preset.Name));
  Answer answer{"now " + state + "; there are " + Join(names), {}};
  answer.json = orvelhost::MakeObject(
      {{key, orvelhost::MakeArray(presets,
                                  [](const T& preset) {
                                    return orvelhost::MakeObject(
                                        {{"name", ShownName(preset.Name)},
                                         {"guid", preset.Guid.AsUTF8String()}});
                                  })},
       {"current", state}});
  return answer;
}

Answer DescribePreset(const char* done, const orvel::UserPreset& preset) {
  const std::string name = ShownName(preset.Name);
  return {std::string(done) + " " + name,
          orvelhost::MakeObject({{"preset", name}, {"preset_guid", preset.Guid.AsUTF8String()}})};
}

Answer TemplateNow(const ShellState& state) {
  const std::string now = state.editor.Templates().GetState();
  return MakeAnswer("template " + now, "template", now);
}

}  // namespace

Answer ApplyPreset(ShellState& state, const Words& words) {
  state.editor.Presets().Apply(words.front());
  const std::string now = state.editor.Presets().GetState();
  Answer answer = MakeAnswer("preset " + now, "preset", now);
  AddAnalysis(state, answer);
  return answer;
}

Answer ListPresets(ShellState& state, const Words& /*words*/) {
  const auto& presets = state.editor.Presets();
  return DescribeList("presets", presets.GetAll(), presets.GetState());
}

Answer SavePreset(ShellState& state, const Words& words) {
  return DescribePreset("saved", state.editor.Presets().Save(words.front()));
}

Answer RemovePreset(ShellState& state, const Words& words) {
  return DescribePreset("removed", state.editor.Presets().Remove(words.front()));
}

Answer SelectTemplate(ShellState& state, const Words& words) {
  state.editor.Templates().Select(words.front());
  return TemplateNow(state);
}

Answer ListTemplates(ShellState& state, const Words& /*words*/) {
  const auto& templates = state.editor.Templates();
  return DescribeList("templates", templates.GetAll(), templates.GetState());
}

Answer SaveTemplate(ShellState& state, const Words& words) {
  state.editor.Templates().Save(words.front());
  return TemplateNow(state);
}

Answer Configure(ShellState& state, const Words& words) {
  state.editor.Templates().Configure(words[0], words[1], words[2]);
  return TemplateNow(state);
}

Answer Revert(ShellState& state, const Words& /*words*/) {
  state.editor.Templates().Revert();
  return TemplateNow(state);
}

}  // namespace orvelcli
