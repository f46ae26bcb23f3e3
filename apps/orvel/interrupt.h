#pragma once

#include <csignal>

namespace orvelcli {

/// Whether SIGINT, SIGTERM or SIGHUP came while they were noted, and was not forgotten. Any thread.
bool WasInterrupted();

/// Forgets a SIGINT, with which a person at a terminal stops what is under way, and no more.
void ForgetInterrupt();

/// While it lives SIGINT, SIGTERM and SIGHUP do not end the program, but are noted; and a reader
/// that has gone is a failure of the write and not the end. A signal that was ignored before stays
/// so. Scopes may nest.
class InterruptScope {
 public:
  InterruptScope();
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;

 private:
  struct sigaction before_[4];
};

}  // namespace orvelcli
