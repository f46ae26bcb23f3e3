#include "host/audio/temporary_file.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

[[noreturn]] void Fail(const std::filesystem::path& target, int cause) {
  throw AudioError("cannot write " + Quoted(target) + ": " +
                   std::generic_category().message(cause));
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

TemporaryFile::TemporaryFile(const std::filesystem::path& target) : target_(target) {
  std::random_device random;
  // Another program may hold the name, so a few are tried. The mode leaves the rest to the umask.
  constexpr int kTries = 16;
  for (int tries = 0; tries < kTries && descriptor_ < 0; ++tries) {
    path_ = FolderOf(target) / std::string(".orvel-").append(std::to_string(random()));
    descriptor_ = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ < 0 && errno != EEXIST) {
      break;
    }
  }
  if (descriptor_ < 0) {
    Fail(target, errno);
  }
}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ >= 0) {
    close(descriptor_);
    unlink(path_.c_str());
  }
}

void TemporaryFile::Commit(bool replace) {
  if (fsync(descriptor_) != 0 ||
      (replace ? rename(path_.c_str(), target_.c_str()) : RenameToNew(path_, target_)) != 0) {
    Fail(target_, errno);
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
