#include "host/audio/temporary_file.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <random>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

/// How the names of a target's passing files begin; digits follow. Of a long name a part is enough.
std::string PrefixOf(const std::filesystem::path& target) {
  constexpr std::size_t kLongest = 200;  // bytes, of the 255 that a name may have
  return "." + target.filename().string().substr(0, kLongest) + ".orvel-";
}

/// Who writes a passing file holds a lock on it, which ends with the process, wherever that ran. No
/// lock can be had where the file system has none, nor for a file that is just being cleared.
bool IsLockRefused(int descriptor) {
  return flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

bool IsRemoved(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && status.st_nlink == 0;
}

/// Of a file that is to be replaced; none where there is no file.
std::optional<mode_t> PermissionsOf(const std::filesystem::path& target) {
  struct stat status {};
  if (stat(target.c_str(), &status) != 0) {
    if (errno == ELOOP) throw AudioError("write", target, errno);
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    throw AudioError("write", target, "it is no regular file");
  }
  return status.st_mode & 0777;
}

std::filesystem::path FolderOf(const std::filesystem::path& target) {
  return target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
}

/// 0, or -1 with errno: EEXIST when there is a file of that name, and be it since a moment ago.
int RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return -1;
  // The file system has no such renaming; a second name is refused by all in the same way.
  return link(from.c_str(), to.c_str()) == 0 ? unlink(from.c_str()) : -1;
}

}  // namespace

std::filesystem::path TemporaryFile::FollowLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;  // as many as the system itself follows
  std::error_code error;
  for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(path, error); ++links) {
    const std::filesystem::path next = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;
  }
  return path;
}

void TemporaryFile::ClearAbandoned(const std::filesystem::path& target) {
  const std::filesystem::path place = FollowLinks(target);
  const std::string prefix = PrefixOf(place);
  std::error_code error;
  for (std::filesystem::directory_iterator entry(FolderOf(place), error), end;
       !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(prefix) ||
        !std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                     [](char c) { return c >= '0' && c <= '9'; })) {
      continue;
    }
    const int descriptor = open(entry->path().c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) continue;
    // Without locks nobody knows whose it is.
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) unlink(entry->path().c_str());
    close(descriptor);
  }
}

TemporaryFile::TemporaryFile(const std::filesystem::path& target) : target_(FollowLinks(target)) {
  // Until it takes the permissions of a target, nobody else may read what that one may hide.
  const mode_t mode = PermissionsOf(target_) ? 0600 : 0666;
  ClearAbandoned(target_);
  std::random_device random;
  // Another program may hold the name, so a few are tried. The mode leaves the rest to the umask.
  constexpr int kTries = 16;
  for (int tries = 0; tries < kTries && descriptor_ < 0; ++tries) {
    path_ = FolderOf(target_) / PrefixOf(target_).append(std::to_string(random()));
    descriptor_ = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor_ < 0 && errno != EEXIST) {
      break;
    }
    // Between its making and its lock it looked abandoned.
    if (descriptor_ >= 0 && (IsLockRefused(descriptor_) || IsRemoved(descriptor_))) {
      close(descriptor_);
      descriptor_ = -1;
      errno = EBUSY;
    }
  }
  if (descriptor_ < 0) {
    throw AudioError("write", target_, errno);
  }
}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ >= 0) {
    close(descriptor_);
    unlink(path_.c_str());
  }
}

int TemporaryFile::Write(const void* bytes, std::size_t count) const {
  const char* next = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t written = write(descriptor_, next, count);
    if (written < 0 && errno != EINTR) return errno;
    if (written <= 0) continue;
    next += written;
    count -= static_cast<std::size_t>(written);
  }
  return 0;
}

void TemporaryFile::Commit(bool replace) {
  if (const auto permissions = PermissionsOf(target_); permissions && replace) {
    static_cast<void>(fchmod(descriptor_, *permissions));  // its failure loses nothing
  }
  if (fsync(descriptor_) != 0 ||
      (replace ? rename(path_.c_str(), target_.c_str()) : RenameToNew(path_, target_)) != 0) {
    throw AudioError("write", target_, errno);
  }
  close(descriptor_);
  descriptor_ = -1;
  // Makes the new name as lasting as the content. The file is complete without it, so a folder that
  // cannot be synchronised is no failure.
  const int folder = open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    fsync(folder);
    close(folder);
  }
}

}  // namespace orvelhost
