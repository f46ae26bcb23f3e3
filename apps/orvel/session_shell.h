#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/session/session_editor.h"
#include "orvel/orvel.h"

namespace orvelcli {

/// What a command answers: a line for people, and an object.
struct Answer {
  std::string text;
  teskcore::serialization::JSONValue json;
  bool hasFailed = false;  ///< in part; `json` has an "error"
};

/// The commands of `orvel session`.
class SessionShell {
 public:
  /// The host must outlive it.
  explicit SessionShell(const orvelhost::Host& host) : host_(host), editor_(host) {}

  /// Carries out one command, given by its words; none is answered by nothing. Raises
  /// std::runtime_error for one that cannot be carried out; all is as it was then.
  Answer Run(const std::vector<std::string>& words);

  /// The words that may stand where the last of `words` begins.
  std::vector<std::string> Complete(const std::vector<std::string>& words) const;

  bool IsOver() const { return isOver_; }
  bool IsModified() const { return editor_.GetUndoStack().IsModified(); }

  /// A line for each command.
  static std::string DescribeCommands();

 private:
  friend struct ShellCommands;

  const orvelhost::Host& host_;
  orvelhost::SessionEditor editor_;
  std::filesystem::path file_;
  bool isOver_ = false;
};

}  // namespace orvelcli
