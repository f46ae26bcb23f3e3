#include "orvel/core/trace.h"

#include <iostream>
#include <map>
#include <mutex>

namespace teskcore::debug {
namespace {

struct Settings {
  std::mutex mutex;
  std::map<std::string, int> levels;
  std::uint64_t changes = 0;
  TraceSink sink;
};

Settings& GetSettings() {
  static Settings settings;
  return settings;
}

struct Target {
  std::string channel;
  int level = 0;
};

Target& CurrentTarget() {
  thread_local Target target;
  return target;
}

}  // namespace

bool TraceEnabled(const std::string& channel, int level, bool byDefault) {
  Settings& settings = GetSettings();
  const std::lock_guard lock(settings.mutex);
  const auto found = settings.levels.find(channel);
  const bool enabled = found == settings.levels.end() ? byDefault : level <= found->second;
  if (enabled) CurrentTarget() = {channel, level};
  return enabled;
}

void Trace(const std::string& text) {
  const Target& target = CurrentTarget();
  Settings& settings = GetSettings();
  std::unique_lock lock(settings.mutex);
  const TraceSink sink = settings.sink;
  lock.unlock();
  if (sink) {
    sink(target.channel, target.level, text);
  } else {
    std::cerr << '[' << target.channel << ' ' << target.level << "] " << text << '\n';
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
