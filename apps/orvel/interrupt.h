#pragma once

#include <csignal>

namespace orvelcli {

/// Whether SIGINT, SIGTERM or SIGHUP came while they were noted, and was not forgotten. Any thread.
bool WasInterrupted();

/// Forgets a SIGINT, with which a person at a terminal stops what is under way, and no more.
void ForgetInterrupt();

/// A file that grows past its limit is a failure of the write from here on, and not the end of the
/// program.
void IgnoreFileLimits();

/// While it lives a reader that has gone is such a failure, too. Scopes may nest.
class WriteFailureScope {
 public:
  WriteFailureScope();
  ~WriteFailureScope();
  WriteFailureScope(const WriteFailureScope&) = delete;
  WriteFailureScope& operator=(const WriteFailureScope&) = delete;

 private:
  struct sigaction before_[1];
};

/// The same; and SIGINT, SIGTERM and SIGHUP do not end the program, but are noted. One that was
/// ignored before stays so.
class InterruptScope {
 public:
  InterruptScope();
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;

 private:
  WriteFailureScope writes_;
  struct sigaction before_[3];
};

}  // namespace orvelcli
