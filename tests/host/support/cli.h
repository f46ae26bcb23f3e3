#pragma once

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {

struct Outcome {
  int exitCode;
  std::string output;
  std::string errors;
};

/// Runs the program in a folder of its own.
class CliTest : public ::testing::Test {
 protected:
  /// `arguments` goes through the shell, and `before` stands before the program there; `input` is
  /// what it reads.
  Outcome Run(const std::string& arguments, const std::string& input = "",
              const std::string& before = "") {
    WriteBytes(folder_ / ".input", input);
    const std::string command = "cd '" + (folder_ / "").string() + "' && { " + before +
                                "'" ORVEL_CLI "' " + arguments + "\n} >.output 2>.errors <.input";
    const int status = std::system(command.c_str());  // NOLINT(cert-env33-c)
    const Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                          ReadBytes(folder_ / ".output"), ReadBytes(folder_ / ".errors")};
    for (const char* name : {".input", ".output", ".errors"}) {
      std::filesystem::remove(folder_ / name);
    }
    return outcome;
  }

  TemporaryFolder folder_;
};

}  // namespace orvelhost::testing
