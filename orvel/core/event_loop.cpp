#include "orvel/core/event_loop.h"

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
  // False when another thread's turn, or one inside a task, took what was waiting.
  const auto take = [this](boost::function<void()>& task) {
    const std::lock_guard lock(mutex_);
    if (tasks_.empty()) return false;
    task.swap(tasks_.front());
    tasks_.pop_front();
    return true;
  };
  std::size_t left = 0;
  {
    const std::lock_guard lock(mutex_);
    left = tasks_.size();
  }
  std::size_t ran = 0;
  for (; ran < left; ++ran) {
    boost::function<void()> task;  // run and destroyed without the lock
    if (!take(task)) break;
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
