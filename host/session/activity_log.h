#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelhost {

/// Receives the library's traces about presets and its usage events while it lives. It keeps the
/// traces for those who want to know why something failed. To a file it writes both, at the end of
/// what stands there: a JSON object a line, with "time" (UTC), "kind" ("trace" or "usage") and what
/// belongs to that. Nothing leaves the machine.
class ActivityLog {
 public:
  /// Without a file nothing is written. Raises std::runtime_error for one that cannot be opened.
  explicit ActivityLog(const std::filesystem::path& file);
  ~ActivityLog();
  ActivityLog(const ActivityLog&) = delete;
  ActivityLog& operator=(const ActivityLog&) = delete;

  /// The traces since the last call, oldest first.
  std::vector<std::string> TakeTraces();

  /// Why a log of this process, which need not live any more, lost what it was to take; empty while
  /// none did.
  static const std::string& Fault() { return fault_; }

 private:
  void Write(const char* kind, teskcore::serialization::JSONValue entry);
  void OnTrace(const std::string& channel, int level, const std::string& text);
  void OnUsage(const orvel::UsageEvent& event);

  inline static std::string fault_;

  std::filesystem::path name_;
  std::ofstream file_;
  std::vector<std::string> traces_;
};

}  // namespace orvelhost
