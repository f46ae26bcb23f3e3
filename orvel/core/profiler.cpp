#include "orvel/core/profiler.h"

namespace teskcore::debug {

CodeProfilerManager& CodeProfilerManager::Get() {
  static auto& manager = *new CodeProfilerManager;  // never destroyed
  return manager;
}

void CodeProfilerManager::SetConditionalProfiling(bool on, int volume) {
  volume_.store(volume, std::memory_order_relaxed);
  conditional_.store(on, std::memory_order_relaxed);
}

void CodeProfilerManager::SetSink(const Sink& sink) {
  const std::lock_guard lock(mutex_);
  sink_ = sink;
}

std::shared_ptr<const ProfileDataLog> CodeProfilerManager::CreateNewProfileDataLog(
    const std::string& name, int volume) {
  return std::make_shared<const ProfileDataLog>(ProfileDataLog{name, volume});
}

void CodeProfilerManager::Report(const ProfileDataLog& log,
                                 std::chrono::nanoseconds duration) const noexcept {
  try {
    std::unique_lock lock(mutex_);
    const Sink sink = sink_;  // it may replace itself
    lock.unlock();
    if (sink) sink(log, duration);
  } catch (...) {
    // Measuring must not change what is measured.
  }
}

CodeProfiler::CodeProfiler(const std::shared_ptr<const ProfileDataLog>& log)
    : log_(log), start_(std::chrono::steady_clock::now()) {}

CodeProfiler::~CodeProfiler() {
  const auto duration = std::chrono::steady_clock::now() - start_;
  CodeProfilerManager::Get().Report(*log_, duration);
}

}  // namespace teskcore::debug

namespace orvel {

const std::shared_ptr<const teskcore::debug::ProfileDataLog>& ProfileName::GetLog() {
  using teskcore::debug::CodeProfilerManager;
  if (log_ == nullptr) {
    log_ = new std::shared_ptr(CodeProfilerManager::Get().CreateNewProfileDataLog(
        name_, CodeProfilerManager::kDefaultVolume));
  }
  return *log_;
}

}  // namespace orvel
