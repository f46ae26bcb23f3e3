#include "apps/orvel/interrupt.h"

#include <atomic>
#include <cstddef>

namespace orvelcli {
namespace {

std::atomic<int> noted = 0;                            // the signal, 0 for none
static_assert(std::atomic<int>::is_always_lock_free);  // a signal may come at any time

void Note(int signal) {
  if (signal != SIGINT || noted == 0) noted = signal;
}

constexpr int kInterrupts[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int kWriteFailures[] = {SIGPIPE};  // the write that it comes of fails, too

template <std::size_t N>
void Take(const int (&signals)[N], void (*handler)(int), struct sigaction (&before)[N]) {
  for (std::size_t i = 0; i < N; ++i) {
    sigaction(signals[i], nullptr, &before[i]);
    if (before[i].sa_handler == SIG_IGN) continue;  // as nohup leaves them
    struct sigaction now {};
    now.sa_handler = handler;
    now.sa_flags = SA_RESTART;
    sigaction(signals[i], &now, nullptr);
  }
}

template <std::size_t N>
void GiveBack(const int (&signals)[N], const struct sigaction (&before)[N]) {
  for (std::size_t i = 0; i < N; ++i) sigaction(signals[i], &before[i], nullptr);
}

}  // namespace

bool WasInterrupted() { return noted != 0; }

void ForgetInterrupt() {
  int expected = SIGINT;
  noted.compare_exchange_strong(expected, 0);
}

void IgnoreFileLimits() { std::signal(SIGXFSZ, SIG_IGN); }

WriteFailureScope::WriteFailureScope() { Take(kWriteFailures, SIG_IGN, before_); }

WriteFailureScope::~WriteFailureScope() { GiveBack(kWriteFailures, before_); }

InterruptScope::InterruptScope() { Take(kInterrupts, &Note, before_); }

InterruptScope::~InterruptScope() { GiveBack(kInterrupts, before_); }

}  // namespace orvelcli
