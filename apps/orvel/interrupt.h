#pragma once

namespace orvelcli {

/// From now on SIGINT and SIGTERM end the program no more, but are noted.
void NoteInterrupts();

bool WasInterrupted();

/// Notes interrupts while it lives; before and after it they end the program.
class InterruptScope {
 public:
  InterruptScope() { NoteInterrupts(); }
  ~InterruptScope();
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;
};

}  // namespace orvelcli
