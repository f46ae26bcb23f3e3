#include "apps/orvel/interrupt.h"

#include <atomic>
#include <csignal>

namespace orvelcli {
namespace {

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);  // a signal may come at any time

void Interrupt(int /*signal*/) { interrupted = true; }

constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int kFailing[] = {SIGXFSZ, SIGPIPE};  // the write that they come of fails, too

}  // namespace

void NoteInterrupts() {
  interrupted = false;
  for (const int signal : kEnding) std::signal(signal, &Interrupt);
  for (const int signal : kFailing) std::signal(signal, SIG_IGN);
}

InterruptScope::~InterruptScope() {
  for (const int signal : kEnding) std::signal(signal, SIG_DFL);
  for (const int signal : kFailing) std::signal(signal, SIG_DFL);
}

bool WasInterrupted() { return interrupted; }

}  // namespace orvelcli
