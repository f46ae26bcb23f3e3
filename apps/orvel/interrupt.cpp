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
  std::signal(SIGHUP, &Interrupt);
}

InterruptScope::~InterruptScope() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
  std::signal(SIGHUP, SIG_DFL);
}

bool WasInterrupted() { return interrupted != 0; }

}  // namespace orvelcli
