#include "orvel/core/event_loop.h"

#include <utility>

namespace teskcore::threads {
namespace {

boost::intrusive_ptr<AsyncEventLoopAdaptor>& RegisteredLoop() {
  static auto& loop = *new boost::intrusive_ptr<AsyncEventLoopAdaptor>;  // never destroyed
  return loop;
}

}  // namespace

void QueuedEventLoop::Post(const boost::function<void()>& task) {
  const std::lock_guard lock(mutex_);
  tasks_.push_back(task);
}

std::size_t QueuedEventLoop::RunTurn() {
  const auto waiting = [this] {
    const std::lock_guard lock(mutex_);
    return tasks_.size();
  };
  std::size_t ran = 0;
  for (std::size_t left = waiting(); left > 0 && waiting() > 0; --left, ++ran) {
    std::unique_lock lock(mutex_);
    const boost::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    lock.unlock();
    task();
  }
  return ran;
}

void QueuedEventLoop::Drain() {
  while (RunTurn() > 0) {
  }
}

boost::intrusive_ptr<AsyncEventLoopAdaptor> GetRegisteredMainThread() {
  return RegisteredLoop() ? RegisteredLoop() : GetDefaultEventLoop();
}

void RegisterMainThread(const boost::intrusive_ptr<AsyncEventLoopAdaptor>& loop) {
  RegisteredLoop() = loop;
}

boost::intrusive_ptr<QueuedEventLoop> GetDefaultEventLoop() {
  static const auto& loop =
      *new boost::intrusive_ptr<QueuedEventLoop>(new QueuedEventLoop);  // never destroyed
  return loop;
}

}  // namespace teskcore::threads
