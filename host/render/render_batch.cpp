#include "host/render/render_batch.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "host/analysis/progress.h"
#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

class Batch {
 public:
  Batch(const Host& host, const std::vector<RenderRequest>& requests)
      : host_(host), requests_(requests), outcomes_(requests.size()), shares_(requests.size()) {
    for (std::size_t index = 0; index < requests_.size(); ++index) {
      requests_[index].progress = [this, index](double done) {
        shares_[index] = done;
        return !isStopped_;
      };
    }
  }

  std::vector<RenderOutcome> Run(int jobCount, const BatchListener& listener) {
    std::vector<std::jthread> workers;
    const std::size_t count = std::min(requests_.size(), static_cast<std::size_t>(jobCount));
    while (workers.size() < count) {
      try {
        workers.emplace_back([this] { Work(); });
      } catch (const std::system_error&) {
        if (workers.empty()) throw;
        break;  // the machine gives no more, and fewer do as well
      }
    }
    try {
      Serve(listener);
    } catch (...) {
      // The listener's; the workers may wait for calls that are still to be made.
      isStopped_ = true;
      Serve({});
      throw;
    }
    return std::move(outcomes_);
  }

 private:
  /// On the main thread: makes the workers' calls and tells how they come on, until all have ended.
  void Serve(const BatchListener& listener) {
    constexpr std::chrono::milliseconds kPatience(100);
    while (true) {
      if (listener.progress && !listener.progress({shares_.begin(), shares_.end()})) {
        isStopped_ = true;
      }
      std::unique_lock lock(mutex_);
      wake_.wait_for(lock, kPatience, [this] { return !calls_.empty() || HasNews(); });
      while (!calls_.empty()) {
        std::packaged_task<void()> call = std::move(calls_.front());
        calls_.pop_front();
        lock.unlock();
        call();
        lock.lock();
      }
      while (HasNews()) {
        const std::size_t index = toldCount_++;
        lock.unlock();
        if (listener.finished) listener.finished(index, outcomes_[index]);
        lock.lock();
      }
      if (toldCount_ == requests_.size()) return;
    }
  }

  bool HasNews() const { return toldCount_ < requests_.size() && hasEnded_[toldCount_]; }

  /// On a worker: one request after another.
  void Work() {
    while (true) {
      const std::size_t index = next_++;
      if (index >= requests_.size()) return;
      outcomes_[index] = RenderOne(index);
      shares_[index] = 1.0;
      const std::lock_guard lock(mutex_);
      hasEnded_[index] = true;
      wake_.notify_one();
    }
  }

  RenderOutcome RenderOne(std::size_t index) {
    RenderOutcome outcome;
    outcome.error = StoppedText(requests_[index]);
    if (isStopped_) return outcome;
    try {
      outcome.report =
          Render(host_, requests_[index], [this](const auto& call) { CallOnMain(call); });
      outcome.status = RenderOutcome::kDone;
      outcome.error.clear();
    } catch (const Cancelled&) {
    } catch (const std::bad_alloc&) {
      outcome.status = RenderOutcome::kFailed;
      outcome.error = "cannot render " + Quoted(requests_[index].input) + ": out of memory";
    } catch (const std::exception& error) {
      outcome.status = RenderOutcome::kFailed;
      outcome.error = error.what();
    }
    return outcome;
  }

  void CallOnMain(const std::function<void()>& call) {
    std::packaged_task<void()> task(call);
    std::future<void> done = task.get_future();
    {
      const std::lock_guard lock(mutex_);
      calls_.push_back(std::move(task));
      wake_.notify_one();
    }
    done.get();
  }

  const Host& host_;
  std::vector<RenderRequest> requests_;  // whose looks are the main thread's
  std::vector<RenderOutcome> outcomes_;  // each its worker's until it has ended
  std::vector<std::atomic<double>> shares_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<bool> isStopped_ = false;

  std::mutex mutex_;  // of what follows
  std::condition_variable wake_;
  std::deque<std::packaged_task<void()>> calls_;
  std::vector<bool> hasEnded_ = std::vector<bool>(requests_.size());
  std::size_t toldCount_ = 0;
};

}  // namespace

std::vector<RenderOutcome> RenderBatch(const Host& host, const std::vector<RenderRequest>& requests,
                                       int jobCount, const BatchListener& listener) {
  return Batch(host, requests).Run(jobCount, listener);
}

}  // namespace orvelhost
