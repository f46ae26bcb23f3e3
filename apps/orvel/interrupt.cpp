#include "apps/orvel/interrupt.h"

#include <csignal>

namespace orvelcli {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void Interrupt(int /*signal*/) { interrupted = 1; }

}  // namespace

void NoteInterrupts() {
  std::signal(SIGINT, &Interrupt);
  std::signal(SIGTERM, &Interrupt);
}

bool WasInterrupted() { return interrupted != 0; }

}  // namespace orvelcli
