#pragma once

#include <filesystem>

#include "orvel/core/dir.h"
#include "orvel/core/guid.h"

namespace orvel::test {

/// An empty folder that goes with the test; in memory where that can be had, for there a flush to
/// the disk takes no time.
class TempDir {
 public:
  TempDir() : path_(Base() / ("orvel-" + Guid::CreateUnique().AsUTF8String())) {
    std::filesystem::create_directories(path_);
  }
  ~TempDir() {
    std::error_code error;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, error);
    std::filesystem::remove_all(path_, error);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  Dir AsDir() const { return Dir(path_.u16string()); }

 private:
  static std::filesystem::path Base() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
  }

  std::filesystem::path path_;
};

}  // namespace orvel::test
