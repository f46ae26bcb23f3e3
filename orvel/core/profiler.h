#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <boost/function.hpp>

#include "orvel/core/export.h"

namespace teskcore::debug {

/// One named place that is profiled.
struct ProfileDataLog {
  std::string name;  ///< as the profiler shows it
  int volume = 0;    ///< the least profiling volume at which it is measured
};

/// How much is profiled, and where the times go.
class ORVEL_EXPORT CodeProfilerManager {
 public:
  /// Takes the duration of one pass.
  using Sink = boost::function<void(const ProfileDataLog& log, std::chrono::nanoseconds duration)>;

  /// The volume at which the library's own scopes are opened.
  static constexpr int kDefaultVolume = 1;

  /// The one instance; it lives as long as the program.
  static CodeProfilerManager& Get();

  /// Whether profiling is on.
  bool IsConditionalProfiling() const { return conditional_.load(std::memory_order_relaxed); }

  /// The volume given with the last `SetConditionalProfiling`; 0 before.
  int GetProfilingVolume() const { return volume_.load(std::memory_order_relaxed); }

  /// Switches profiling on or off; scopes are opened while it is on and `volume` is at least
  /// theirs. Off at the start.
  void SetConditionalProfiling(bool on, int volume = kDefaultVolume);

  /// Receives each scope's duration as it ends; called on the scope's thread, and that may still
  /// be the case for the sink before when this returns.
  void SetSink(const Sink& sink);

  /// A place of this name, for scopes to report under.
  std::shared_ptr<const ProfileDataLog> CreateNewProfileDataLog(const std::string& name,
                                                                int volume);

  /// Hands a duration to the sink. What the sink throws ends here: a scope ends wherever the code
  /// in it does, also while an exception is on its way.
  void Report(const ProfileDataLog& log, std::chrono::nanoseconds duration) const noexcept;

 private:
  CodeProfilerManager() = default;
  std::atomic<bool> conditional_{false};
  std::atomic<int> volume_{0};
  mutable std::mutex mutex_;
  Sink sink_;  // behind mutex_
};

/// Measures from its construction to its end.
class ORVEL_EXPORT CodeProfiler {
 public:
  /// Starts the measurement, which is reported under `log`.
  explicit CodeProfiler(const std::shared_ptr<const ProfileDataLog>& log);
  ~CodeProfiler();
  CodeProfiler(const CodeProfiler&) = delete;
  CodeProfiler& operator=(const CodeProfiler&) = delete;

 private:
  std::shared_ptr<const ProfileDataLog> log_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace teskcore::debug

namespace orvel {

/// The name of a scope, made once, as a static object at the place that is profiled; its log is
/// made on first use, and never destroyed.
class ORVEL_EXPORT ProfileName {
 public:
  /// `name` must live as long as the object: a literal.
  explicit constexpr ProfileName(const char* name) : name_(name) {}

  /// The place of this name; made by the first call.
  const std::shared_ptr<const teskcore::debug::ProfileDataLog>& GetLog();

 private:
  const char* name_;
  const std::shared_ptr<const teskcore::debug::ProfileDataLog>* log_ = nullptr;
};

/// Opens the host's profiler scope `name` while profiling is on, and costs a call into the library
/// and a load while it is off.
class ProfileScope {
 public:
  /// Measures from here to its own end.
  explicit ProfileScope(ProfileName& name) {
    using teskcore::debug::CodeProfilerManager;
    const CodeProfilerManager& manager = CodeProfilerManager::Get();
    if (manager.IsConditionalProfiling() &&
        manager.GetProfilingVolume() >= CodeProfilerManager::kDefaultVolume) {
      profiler_.emplace(name.GetLog());
    }
  }

 private:
  std::optional<teskcore::debug::CodeProfiler> profiler_;
};

}  // namespace orvel
