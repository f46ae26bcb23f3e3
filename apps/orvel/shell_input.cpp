#include "apps/orvel/shell_input.h"

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <iostream>
#include <system_error>

#include <editline/readline.h>
#include <poll.h>
#include <unistd.h>

#include "apps/orvel/interrupt.h"
#include "apps/orvel/shell_words.h"

namespace orvelcli {
namespace {

// The line editor knows functions only.
ShellInput::Completer& ActiveCompleter() {
  static ShellInput::Completer completer;
  return completer;
}

/// What stands in the line for the candidate from `start` on, the end of `word`. Where no quote is
/// open, a word with blanks gets its own.
std::string Written(const std::string& candidate, const std::string& word, const std::string& start,
                    char openQuote) {
  if (openQuote != '\0') return candidate.substr(word.size() - start.size()) + openQuote;
  return candidate.find(' ') == std::string::npos || word != start ? candidate
                                                                   : '"' + candidate + '"';
}

/// Gives one candidate after another, the first for `state` 0, in memory that the editor frees.
char* NextCandidate(const char* start, int state) {
  static std::vector<std::string> candidates;
  static std::size_t next;
  if (state == 0) {
    const std::string line(rl_line_buffer, static_cast<std::size_t>(rl_point));
    std::vector<std::string> words;
    char openQuote = '\0';
    if (!SplitWords(line, words)) openQuote = SplitWords(line + '"', words) ? '"' : '\'';
    if (openQuote == '\'') SplitWords(line + openQuote, words);
    if (*start == '\0' && openQuote == '\0') words.emplace_back();
    const std::string word = words.back();
    candidates.clear();
    for (const std::string& candidate : ActiveCompleter()(words)) {
      if (candidate.starts_with(word) && word.ends_with(start)) {
        candidates.push_back(Written(candidate, word, start, openQuote));
      }
    }
    next = 0;
  }
  return next < candidates.size() ? strdup(candidates[next++].c_str()) : nullptr;
}

/// The editor's next character; EOF, which ends the line, after a signal that was noted. The
/// editor's own reader goes on after signals.
int NextCharacter(FILE* /*input*/) {
  constexpr int kPatience = 100;  // milliseconds
  std::mbstate_t state{};
  while (!WasInterrupted()) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, kPatience) <= 0) continue;
    char byte = 0;
    if (read(STDIN_FILENO, &byte, 1) != 1) return EOF;
    wchar_t character = 0;
    const std::size_t length = std::mbrtowc(&character, &byte, 1, &state);
    if (length <= 1) return static_cast<int>(character);
    if (length == static_cast<std::size_t>(-1)) state = {};  // no character; it is left out
  }
  return EOF;
}

/// The editor and NextCharacter go by the process's locale. The program's texts are UTF-8 whatever
/// the environment says, which in a container is nothing. Numbers keep their points.
void UseUtf8() {
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) std::setlocale(LC_CTYPE, "");
}

char** Complete(const char* start, int /*begin*/, int /*end*/) {
  return rl_completion_matches(start, &NextCandidate);
}

}  // namespace

bool ShellInput::IsTerminal() { return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

ShellInput::ShellInput(const Completer& completer) {
  if (!IsTerminal()) return;
  UseUtf8();
  ActiveCompleter() = completer;
  rl_getc_function = &NextCharacter;
  rl_initialize();
  using_history();
  rl_attempted_completion_function = &Complete;
}

ShellInput::~ShellInput() { ActiveCompleter() = {}; }

bool ShellInput::Read(std::string& line) {
  if (!IsTerminal()) {
    if (std::getline(std::cin, line)) return true;
    if (std::ferror(stdin) == 0 || WasInterrupted()) return false;
    throw std::system_error(errno, std::generic_category(), "cannot read the standard input");
  }
  char* text = nullptr;
  while ((text = readline("orvel> ")) == nullptr) {
    std::cout << std::endl;
    if (!WasInterrupted()) return false;
    ForgetInterrupt();
    if (WasInterrupted()) return false;
  }
  line = text;
  std::free(text);
  if (!line.empty()) add_history(line.c_str());
  return true;
}

}  // namespace orvelcli
