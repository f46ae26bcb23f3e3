#pragma once

#include <functional>
#include <string>
#include <vector>

namespace orvelcli {

/// The lines of the standard input: from a terminal with a prompt, a history and completion, from
/// anything else as they come. One at a time.
class ShellInput {
 public:
  /// The words that may stand where the last of `words`, which may be empty, begins.
  using Completer = std::function<std::vector<std::string>(const std::vector<std::string>& words)>;

  /// At a terminal it sets the process's characters to UTF-8; no other thread may run then.
  explicit ShellInput(const Completer& completer);
  ~ShellInput();
  ShellInput(const ShellInput&) = delete;
  ShellInput& operator=(const ShellInput&) = delete;

  /// Whether a person sits at both ends.
  static bool IsTerminal();

  /// False at the end, and at a terminal after SIGTERM or SIGHUP; SIGINT clears the line there.
  /// They are to be noted by an InterruptScope. Raises std::system_error for what cannot be read,
  /// such as a folder.
  bool Read(std::string& line);
};

}  // namespace orvelcli
