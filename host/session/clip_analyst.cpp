#include "host/session/clip_analyst.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

/// One measurement. It does not own its clip, which must not end on the other thread.
struct Job {
  Clip* clip = nullptr;  ///< for the main thread, and until it is cancelled
  std::filesystem::path path;
  bool withRemix = false;
  std::atomic<bool> cancelled = false;
  std::atomic<double> done = -1.0;
};

}  // namespace

class ClipAnalyst::Worker : public std::enable_shared_from_this<Worker> {
 public:
  Worker(AnalysisCache& cache, const boost::intrusive_ptr<orvel::AsyncEventLoopAdaptor>& loop)
      : cache_(cache), loop_(loop) {}

  void End() {
    {
      const std::lock_guard lock(mutex_);
      waiting_.clear();
    }
    while (!jobs_.empty()) {
      const boost::intrusive_ptr<Clip> clip = jobs_.begin()->first;
      Cancel(clip);
    }
    if (thread_.joinable()) {
      thread_.request_stop();
      thread_.join();
    }
  }

  void Add(const boost::intrusive_ptr<Clip>& clip, const std::filesystem::path& path) {
    const auto job = std::make_shared<Job>();
    job->clip = clip.get();
    job->path = path;
    job->withRemix = clip->WantsRemix();
    jobs_[clip] = job;
    if (!EnsureThread()) {
      Cancel(clip);
      return;
    }
    const std::lock_guard lock(mutex_);
    waiting_.push_back(job);
    wake_.notify_one();
  }

  void Cancel(const boost::intrusive_ptr<Clip>& clip) {
    if (const auto found = jobs_.find(clip); found != jobs_.end()) {
      found->second->cancelled = true;
      jobs_.erase(found);
      clip->SetMeasurement(std::nullopt);
    }
  }

  double Done(const boost::intrusive_ptr<Clip>& clip) const {
    const auto found = jobs_.find(clip);
    return found == jobs_.end() ? -1.0 : found->second->done.load();
  }

  bool IsBusy() const { return !jobs_.empty(); }

  bool Wait(const std::function<bool()>& goOn) {
    constexpr std::chrono::milliseconds kPatience(50);
    std::unique_lock lock(mutex_);
    while (posted_ == told_) {
      lock.unlock();
      if (!goOn()) {
        return false;
      }
      lock.lock();
      ready_.wait_for(lock, kPatience, [this] { return posted_ != told_; });
    }
    return true;
  }

 private:
  /// False when there is none; the machine may have one to give the next time.
  bool EnsureThread() {
    if (thread_.joinable()) return true;
    try {
      thread_ = std::jthread([this](const std::stop_token& stop) { Run(stop); });
    } catch (const std::system_error&) {
      return false;
    }
    return true;
  }

  void Run(const std::stop_token& stop) {
    while (true) {
      std::unique_lock lock(mutex_);
      if (!wake_.wait(lock, stop, [this] { return !waiting_.empty(); })) {
        return;
      }
      const std::shared_ptr<Job> job = waiting_.front();
      waiting_.pop_front();
      lock.unlock();
      if (job->cancelled) continue;
      const std::optional<ClipMeasurement> result = Measure(*job);
      loop_->Post([worker = weak_from_this(), job, result] {
        if (const std::shared_ptr<Worker> alive = worker.lock()) {
          alive->Tell(job, result);
        }
      });
      lock.lock();
      ++posted_;
      ready_.notify_one();
    }
  }

  std::optional<ClipMeasurement> Measure(Job& job) {
    try {
      return MeasureFile(job.path, job.withRemix, cache_, [&job](double done) {
        job.done = done;
        return !job.cancelled;
      });
    } catch (const Cancelled&) {
    } catch (const std::exception&) {  // of the file, or for want of memory
    }
    return std::nullopt;
  }

  void Tell(const std::shared_ptr<Job>& job, const std::optional<ClipMeasurement>& result) {
    {
      const std::lock_guard lock(mutex_);
      ++told_;
    }
    if (job->cancelled) return;
    const boost::intrusive_ptr<Clip> clip(job->clip);
    jobs_.erase(clip);
    clip->SetMeasurement(result);
  }

  std::map<boost::intrusive_ptr<Clip>, std::shared_ptr<Job>> jobs_;  // of the main thread

  AnalysisCache& cache_;
  boost::intrusive_ptr<orvel::AsyncEventLoopAdaptor> loop_;
  std::mutex mutex_;  // for what follows
  std::condition_variable_any wake_;
  std::condition_variable_any ready_;
  std::size_t posted_ = 0;  // results
  std::size_t told_ = 0;    // those of them that the main thread has taken
  std::deque<std::shared_ptr<Job>> waiting_;
  std::jthread thread_;  // the last member, as it uses the others
};

ClipAnalyst::ClipAnalyst(AnalysisCache& cache,
                         const boost::intrusive_ptr<orvel::AsyncEventLoopAdaptor>& loop)
    : worker_(std::make_shared<Worker>(cache, loop)) {}

ClipAnalyst::~ClipAnalyst() { worker_->End(); }

void ClipAnalyst::Serve(const boost::intrusive_ptr<Clip>& clip, const std::filesystem::path& path) {
  clip->SetMeasurer([worker = std::weak_ptr(worker_), raw = clip.get(), path] {
    if (const std::shared_ptr<Worker> alive = worker.lock()) {
      alive->Add(raw, path);
    } else {
      raw->SetMeasurement(std::nullopt);
    }
  });
}

void ClipAnalyst::Cancel(const boost::intrusive_ptr<Clip>& clip) { worker_->Cancel(clip); }

double ClipAnalyst::Done(const boost::intrusive_ptr<Clip>& clip) const {
  return worker_->Done(clip);
}

bool ClipAnalyst::IsBusy() const { return worker_->IsBusy(); }

bool ClipAnalyst::Wait(const std::function<bool()>& goOn) const { return worker_->Wait(goOn); }

}  // namespace orvelhost
