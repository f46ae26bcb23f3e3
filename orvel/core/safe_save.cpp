#include "orvel/core/safe_save.h"

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvel/core/dir.h"
#include "orvel/core/native_path.h"
#include "orvel/core/temp_name.h"

namespace teskcore::filesupport {
namespace fs = std::filesystem;

namespace {

[[noreturn]] void Fail(const fs::path& path, int error) {
  throw file_exception(path.string() + ": " + std::generic_category().message(error));
}

class Descriptor {
 public:
  Descriptor(const fs::path& path, int flags, mode_t mode = 0)
      : path_(path), number_(open(path.c_str(), flags | O_CLOEXEC, mode)) {
    if (number_ < 0) Fail(path, errno);
  }
  ~Descriptor() { close(number_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void Flush() const {
    if (fsync(number_) != 0) Fail(path_, errno);
  }

  void SetPermissions(mode_t mode) const {
    static_cast<void>(fchmod(number_, mode));  // a nicety: its failure loses nothing
  }

 private:
  fs::path path_;
  int number_;
};

constexpr mode_t kNewFileMode = 0666;
constexpr mode_t kOwnersAlone = 0600;

// Where a save to `file` ends up: links are followed, also one that leads to nothing yet.
File FollowLinks(const File& file) {
  constexpr int kMostLinks = 40;  // as many as the system itself follows
  fs::path path = ToNative(file.FullPath());
  std::error_code error;
  for (int links = 0; fs::is_symlink(fs::symlink_status(path, error)); ++links) {
    if (links == kMostLinks) Fail(path, ELOOP);
    const fs::path next = fs::read_symlink(path, error);
    if (error) Fail(path, error.value());
    path = path.parent_path() / next;
  }
  return File(FromNative(path));
}

// Of the target itself: none when it is a link, which is to be replaced.
std::optional<mode_t> PermissionsOf(const fs::path& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode)) return std::nullopt;
  if (!S_ISREG(status.st_mode)) {
    throw file_exception(path.string() + ": is no regular file, and cannot be replaced by one");
  }
  return status.st_mode & 0777;
}

}  // namespace

SafeSave::SafeSave(const File& target, Links links)
    : target_(links == Links::kFollow ? FollowLinks(target) : target),
      temp_(target_.Parent(), MakeTempName()) {
  // Until it takes the permissions of a target, nobody else may read what that one may hide.
  const bool replaces = PermissionsOf(ToNative(target_.FullPath())).has_value();
  const Descriptor created(ToNative(temp_.FullPath()), O_WRONLY | O_CREAT | O_EXCL,
                           replaces ? kOwnersAlone : kNewFileMode);
}

SafeSave::~SafeSave() {
  std::error_code error;
  fs::remove(ToNative(temp_.FullPath()), error);
}

void SafeSave::Commit() {
  const fs::path target = ToNative(target_.FullPath());
  const fs::path temp = ToNative(temp_.FullPath());
  const Descriptor written(temp, O_RDONLY);
  // Only now: a target that may not be written would not let its new content be written either.
  if (const auto permissions = PermissionsOf(target)) written.SetPermissions(*permissions);
  written.Flush();
  const fs::path parent = target.parent_path();
  // Before the target is touched: a folder may let one write and not read.
  const Descriptor folder(parent.empty() ? fs::path(".") : parent, O_RDONLY | O_DIRECTORY);
  std::error_code error;
  fs::rename(temp, target, error);
  if (error) Fail(target, error.value());
  folder.Flush();
}

}  // namespace teskcore::filesupport
