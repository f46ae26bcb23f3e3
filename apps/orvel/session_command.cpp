#include "apps/orvel/session_command.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "apps/orvel/command.h"
#include "apps/orvel/exit_code.h"
#include "apps/orvel/interrupt.h"
#include "apps/orvel/session_shell.h"
#include "apps/orvel/shell_input.h"
#include "apps/orvel/shell_words.h"

namespace orvelcli {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::GetJSONUTF8String;
using teskcore::serialization::JSONValue;

/// An answer is one line, whatever names are in it.
std::string OneLine(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
  return text;
}

void PrintError(const CommandLine& line, const std::string& error) {
  if (line.AsJSON()) {
    JSONValue object;
    AddToObject(object, "error", JSONValue(error));
    std::cout << GetJSONUTF8String(object, false) << std::endl;
  } else {
    std::cout << "error: " << OneLine(error) << std::endl;
  }
}

/// Raises std::runtime_error for what JSON cannot say.
void PrintAnswer(const CommandLine& line, const Answer& answer) {
  if (line.AsJSON()) {
    const std::string text = GetJSONUTF8String(answer.json, false);
    if (text.empty()) throw std::runtime_error("the answer holds a number that is not finite");
    std::cout << text << std::endl;
  } else if (!line.IsQuiet()) {
    std::cout << OneLine(answer.text) << std::endl;
  }
}

/// False when the command failed.
bool Answered(SessionShell& shell, const CommandLine& line, const std::vector<std::string>& words) {
  try {
    const Answer answer = shell.Run(words);
    if (answer.hasFailed && !line.AsJSON()) {
      PrintError(line, answer.text);
    } else if (!answer.json.empty()) {
      PrintAnswer(line, answer);
    }
    return !answer.hasFailed;
  } catch (const std::exception& error) {
    PrintError(line, error.what());
    return false;
  }
}

/// Whether a person who has not saved should hear so before this command.
bool LosesWork(const SessionShell& shell, const std::vector<std::string>& words) {
  return shell.IsModified() && !words.empty() &&
         (words.front() == "quit" || words.front() == "open");
}

int RunShell(const Command& command, const CommandLine& line) {
  if (line.Words().size() > 1) throw UsageError("give one session, not several");
  std::signal(SIGPIPE, SIG_IGN);  // what is under way, such as a save, comes to its end
  const orvelhost::Host host;
  const bool isTerminal = ShellInput::IsTerminal();
  SessionShell shell(host, isTerminal ? Pace::kAtOnce : Pace::kReproducible);
  PrintNotes(command, line, host);
  bool allDone = true;
  ShellInput input([&shell](const auto& words) { return shell.Complete(words); });
  if (!line.Words().empty()) allDone = Answered(shell, line, {"open", line.Words().front()});
  if (!allDone && !isTerminal) return kExit_Failed;  // the commands are meant for that session
  std::optional<InterruptScope> interrupts;
  if (isTerminal) interrupts.emplace();
  std::vector<std::string> warned;  // the command that was held back last
  std::string text;
  while (!shell.IsOver() && !WasInterrupted() && (isTerminal || std::cout)) {
    if (!input.Read(text)) {
      if (!isTerminal || WasInterrupted()) break;
      text = "quit";
    }
    std::vector<std::string> words;
    if (!SplitWords(text, words)) {
      PrintError(line, "a quote does not end");
      allDone = false;
    } else if (isTerminal && words != warned && LosesWork(shell, words)) {
      warned = words;
      PrintError(line, "the session is not saved; the same command again goes on all the same");
    } else {
      warned.clear();
      allDone &= Answered(shell, line, words);
    }
    if (isTerminal) ForgetInterrupt();
  }
  if (WasInterrupted()) return kExit_Interrupted;
  return allDone ? kExit_Success : kExit_Failed;
}

}  // namespace

int RunSession(int argc, char** argv) {
  static const std::string usage =
      "Usage: orvel session [FILE] [--json] [--quiet]\n"
      "\n"
      "Works on a session of clips by commands, one a line, from the terminal or a pipe. Each is\n"
      "answered by one line; one that fails by a line that begins with error, and the exit code "
      "is\n"
      "1 at the end. Words with blanks stand in quotes. FILE is a session that was saved; from a\n"
      "pipe nothing is done when it cannot be opened.\n"
      "\n"
      "What controls have to know of a clip is measured meanwhile. At a terminal the answers tell\n"
      "what is known by then; from a pipe, show, clips and save wait for it. render always waits.\n"
      "\n" +
      SessionShell::DescribeCommands() +
      "\n"
      "  -j, --json    answers are JSON objects; those of what failed have \"error\"\n"
      "  -q, --quiet   tells what failed only\n";
  const Command command = {"orvel session", usage.c_str(), {}, &RunShell};
  return RunCommand(command, argc, argv);
}

}  // namespace orvelcli
