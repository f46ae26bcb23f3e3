#pragma once

namespace orvelcli {

/// From now on SIGINT, SIGTERM and SIGHUP end the program no more, but are noted; and a file that
/// grows past its limit, or a reader that has gone, is a failure of the write and not the end.
void NoteInterrupts();

/// Since the last NoteInterrupts. Any thread.
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
