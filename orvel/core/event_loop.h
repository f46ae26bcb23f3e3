#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>

#include <boost/function.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/ref_counted.h"

namespace teskcore::threads {

/// A thread's event loop, as far as the library needs it.
class ORVEL_EXPORT AsyncEventLoopAdaptor : public virtual utility::RefCountedObject {
 public:
  /// Keeps `task` to be run later by the loop, never from inside this call, in the order posted.
  /// May be called from any thread.
  virtual void Post(const boost::function<void()>& task) = 0;
};

/// An event loop for a program without one of its own: the program says when tasks run.
class ORVEL_EXPORT QueuedEventLoop : public AsyncEventLoopAdaptor {
 public:
  void Post(const boost::function<void()>& task) override;

  /// One turn of the loop: runs the tasks that are waiting now and returns their number. Tasks that
  /// these post wait for the next turn. A task that throws ends the turn; those behind it keep
  /// waiting, in their order.
  std::size_t RunTurn();

  /// Runs turns until nothing is waiting.
  void Drain();

 private:
  std::mutex mutex_;
  std::deque<boost::function<void()>> tasks_;
};

/// The host's main-thread loop: the one registered, else a `QueuedEventLoop` made on first use.
/// Never null.
ORVEL_EXPORT boost::intrusive_ptr<AsyncEventLoopAdaptor> GetRegisteredMainThread();

/// Replaces the main-thread loop; null brings back the default.
ORVEL_EXPORT void RegisterMainThread(const boost::intrusive_ptr<AsyncEventLoopAdaptor>& loop);

/// The loop that `GetRegisteredMainThread` gives when no other is registered, for the program that
/// runs it.
ORVEL_EXPORT boost::intrusive_ptr<QueuedEventLoop> GetDefaultEventLoop();

/// The thread that calls.
inline std::thread::id GetCurrentThreadID() { return std::this_thread::get_id(); }

}  // namespace teskcore::threads

namespace orvel {
using teskcore::threads::AsyncEventLoopAdaptor;
using teskcore::threads::GetCurrentThreadID;
using teskcore::threads::GetRegisteredMainThread;
using teskcore::threads::QueuedEventLoop;
}  // namespace orvel
