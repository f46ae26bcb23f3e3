#include "apps/orvel/shell_input.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include <editline/readline.h>
#include <unistd.h>

#include "apps/orvel/shell_words.h"

namespace orvelcli {
namespace {

// The line editor knows functions only.
ShellInput::Completer& ActiveCompleter() {
  static ShellInput::Completer completer;
  return completer;
}

/// Gives one candidate after another, the first for `state` 0, in memory that the editor frees.
char* NextCandidate(const char* start, int state) {
  static std::vector<std::string> candidates;
  static std::size_t next;
  if (state == 0) {
    std::vector<std::string> words;
    SplitWords(std::string(rl_line_buffer, static_cast<std::size_t>(rl_point)), words);
    if (*start == '\0') words.emplace_back();
    candidates = ActiveCompleter()(words);
    next = 0;
  }
  while (next < candidates.size()) {
    const std::string& candidate = candidates[next++];
    if (candidate.starts_with(start)) return strdup(candidate.c_str());
  }
  return nullptr;
}

char** Complete(const char* start, int /*begin*/, int /*end*/) {
  return rl_completion_matches(start, &NextCandidate);
}

}  // namespace

bool ShellInput::IsTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

ShellInput::ShellInput(const Completer& completer) {
  if (!IsTerminal()) return;
  ActiveCompleter() = completer;
  rl_initialize();
  using_history();
  rl_attempted_completion_function = &Complete;
}

ShellInput::~ShellInput() { ActiveCompleter() = {}; }

bool ShellInput::Read(std::string& line) {
  if (!IsTerminal()) return static_cast<bool>(std::getline(std::cin, line));
  char* const text = readline("orvel> ");
  if (text == nullptr) {
    std::cout << "\n";
    return false;
  }
  line = text;
  std::free(text);
  if (!line.empty()) add_history(line.c_str());
  return true;
}

}  // namespace orvelcli
