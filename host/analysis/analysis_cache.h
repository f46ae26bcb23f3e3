#pragma once

#include <any>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "host/analysis/progress.h"

namespace orvelhost {

/// Names the content of a file: a hash over all its bytes. Two copies of a recording have the same
/// key, and an edited file another one. Reading the bytes is far cheaper than decoding them; they
/// are read again only when the file's place, size or time of change differ from what they were.
/// Throws AudioError when the file cannot be read, and Cancelled.
std::string ContentKey(const std::filesystem::path& path, const Progress& progress = {});

/// Results of work on clips, kept in memory under the content's key and the name of the work. Used
/// from any thread. Work that is asked for while it is under way is waited for, not done twice;
/// work that threw, because it was cancelled or failed, leaves nothing and is done anew when asked
/// for again.
class AnalysisCache {
 public:
  /// The kept result, or that of `compute`. One name goes with one Result type.
  template <typename Compute>
  auto Get(const std::string& contentKey, const std::string& work, Compute&& compute) {
    using Result = decltype(compute());
    const std::shared_ptr<Entry> entry = Find(contentKey, work);
    const std::lock_guard lock(entry->mutex);
    if (!entry->result.has_value()) {
      entry->result = Result(compute());
    }
    return std::any_cast<Result>(entry->result);
  }

 private:
  struct Entry {
    std::mutex mutex;
    std::any result;
  };

  std::shared_ptr<Entry> Find(const std::string& contentKey, const std::string& work);

  std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, std::shared_ptr<Entry>> entries_;
};

}  // namespace orvelhost
