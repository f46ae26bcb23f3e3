#include "orvel/core/trace.h"

#include <iostream>
#include <map>
#include <mutex>
#include <optional>

#include "orvel/core/immutable_string.h"

namespace teskcore::debug {
namespace {

struct Settings {
  std::mutex mutex;
  std::map<std::string, int> levels;
  std::uint64_t changes = 0;
  TraceSink sink;
};

Settings& GetSettings() {
  static auto& settings = *new Settings;  // never destroyed
  return settings;
}

struct Target {
  utility::ImmutableString channel;
  int level;
};

// Without a destructor, as the settings: a thread's objects are the first to go at its end.
thread_local constinit std::optional<Target> currentTarget;

}  // namespace

bool TraceEnabled(const std::string& channel, int level, bool byDefault) {
  Settings& settings = GetSettings();
  const std::lock_guard lock(settings.mutex);
  const auto found = settings.levels.find(channel);
  const bool enabled = found == settings.levels.end() ? byDefault : level <= found->second;
  if (enabled) currentTarget = {utility::ImmutableString::CreateStatic(channel), level};
  return enabled;
}

void Trace(const std::string& text) {
  if (!currentTarget) return;
  const auto& [channel, level] = *currentTarget;
  Settings& settings = GetSettings();
  std::unique_lock lock(settings.mutex);
  const TraceSink sink = settings.sink;
  lock.unlock();
  if (sink) {
    sink(channel.AsUTF8String(), level, text);
  } else {
    std::cerr << '[' << channel.AsUTF8String() << ' ' << level << "] " << text << '\n';
  }
}

std::uint64_t TraceChangeCount() {
  Settings& settings = GetSettings();
  const std::lock_guard lock(settings.mutex);
  return settings.changes;
}

void SetTraceLevel(const std::string& channel, int level) {
  Settings& settings = GetSettings();
  const std::lock_guard lock(settings.mutex);
  settings.levels[channel] = level;
  ++settings.changes;
}

void SetTraceSink(const TraceSink& sink) {
  Settings& settings = GetSettings();
  const std::lock_guard lock(settings.mutex);
  settings.sink = sink;
}

}  // namespace teskcore::debug
