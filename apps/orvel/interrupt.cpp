#include "apps/orvel/interrupt.h"

#include <atomic>
#include <cstddef>
#include <iterator>

namespace orvelcli {
namespace {

std::atomic<int> noted = 0;                            // the signal, 0 for none
static_assert(std::atomic<int>::is_always_lock_free);  // a signal may come at any time

void Note(int signal) {
  if (signal != SIGINT || noted == 0) noted = signal;
}

// clang-format off
const struct {
  int signal;
  void (*handler)(int);
} kHandled[] = {
  { SIGINT,  &Note   },
  { SIGTERM, &Note   },
  { SIGHUP,  &Note   },
  { SIGPIPE, SIG_IGN },  // the write that it comes of fails, too
};
// clang-format on

}  // namespace

bool WasInterrupted() { return noted != 0; }

void ForgetInterrupt() {
  int expected = SIGINT;
  noted.compare_exchange_strong(expected, 0);
}

InterruptScope::InterruptScope() {
  static_assert(std::size(kHandled) == sizeof before_ / sizeof *before_);
  for (std::size_t i = 0; i < std::size(kHandled); ++i) {
    sigaction(kHandled[i].signal, nullptr, &before_[i]);
    if (before_[i].sa_handler == SIG_IGN) continue;  // as nohup leaves them
    struct sigaction now {};
    now.sa_handler = kHandled[i].handler;
    now.sa_flags = SA_RESTART;
    sigaction(kHandled[i].signal, &now, nullptr);
  }
}

InterruptScope::~InterruptScope() {
  for (std::size_t i = 0; i < std::size(kHandled); ++i) {
    sigaction(kHandled[i].signal, &before_[i], nullptr);
  }
}

}  // namespace orvelcli
