#pragma once

#include <filesystem>
#include <vector>

namespace orvelhost {

/// A folder for outputs, made with those above it where there is none yet. Its end takes away again
/// what it made and nothing came into.
class OutputFolder {
 public:
  /// Throws AudioError when it cannot be made, and leaves nothing then. An empty name is no folder.
  explicit OutputFolder(const std::filesystem::path& folder);
  ~OutputFolder();
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

 private:
  OutputFolder() = default;

  std::vector<std::filesystem::path> made_;  ///< the outermost first
};

}  // namespace orvelhost
