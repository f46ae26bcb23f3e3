#pragma once

#include <string>
#include <vector>

#include "apps/orvel/shell_verbs.h"

namespace orvelcli {

/// What is measured on clips is measured beside the commands. Somebody at a terminal is answered at
/// once, by what is known then. For anybody else the same commands have the same answers: they
/// learn of what was measured when they ask for it, and wait for it then.
enum class Pace { kAtOnce, kReproducible };

/// The commands of `orvel session`.
class SessionShell {
 public:
  /// The host must outlive it.
  SessionShell(const orvelhost::Host& host, Pace pace) : state_{host}, pace_(pace) {}

  /// Carries out one command, given by its words; none is answered by nothing. Raises
  /// std::runtime_error for one that cannot be carried out; all is as it was then.
  Answer Run(const std::vector<std::string>& words);

  /// The words that may stand where the last of `words` begins.
  std::vector<std::string> Complete(const std::vector<std::string>& words) const;

  bool IsOver() const { return state_.isOver; }
  bool IsModified() const { return state_.editor.GetUndoStack().IsModified(); }

  /// A line for each command.
  static std::string DescribeCommands();

 private:
  ShellState state_;
  Pace pace_;
};

}  // namespace orvelcli
