#include "apps/orvel/session_shell.h"

#include <algorithm>

#include "host/catalogue/mode_catalogue.h"

namespace orvelcli {

using orvelhost::EditError;

Answer SessionShell::Run(const std::vector<std::string>& words) {
  if (words.empty()) return {};
  const auto verbs = GetShellVerbs();
  const auto verb = std::ranges::find(verbs, words.front(), &ShellVerb::name);
  if (verb == verbs.end()) {
    throw EditError("there is no command '" + words.front() + "'; help lists them");
  }
  const Words arguments(words.begin() + 1, words.end());
  if (arguments.size() < verb->least || arguments.size() > verb->most) {
    throw EditError("write " + UsageOf(*verb));
  }
  orvelhost::Session& session = *state_.host.GetSession();
  if (pace_ == Pace::kAtOnce) {
    session.TakeMeasurements();
  } else if (verb->isMeasured) {
    session.AwaitMeasurements([] { return true; });
  }
  return verb->run(state_, arguments);
}

std::vector<std::string> SessionShell::Complete(const std::vector<std::string>& words) const {
  Words candidates;
  if (words.size() <= 1) {
    for (const ShellVerb& verb : GetShellVerbs()) candidates.emplace_back(verb.name);
    return candidates;
  }
  try {
    const std::string& verb = words.front();
    if (verb == "mode") {
      for (const auto& mode : orvelhost::GetModes()) candidates.push_back(mode.modeID);
      candidates.emplace_back("none");
    } else if (words.size() == 2 && (verb == "set" || verb == "drag" || verb == "offset")) {
      for (const auto& control : state_.editor.Controls().GetAll("")) {
        candidates.push_back(control.name);
      }
    } else if (verb == "preset" || verb == "remove-preset") {
      for (const auto& preset : state_.editor.Presets().GetAll()) {
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
  for (const ShellVerb& verb : GetShellVerbs()) {
    std::string usage = "  " + UsageOf(verb);
    usage.resize(std::max(usage.size() + 2, kWidth), ' ');
    text += usage + std::string(verb.help) + "\n";
  }
  return text;
}

}  // namespace orvelcli
