#include "orvel/core/safe_save.h"

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvel/core/dir.h"
#include "orvel/core/guid.h"
#include "orvel/core/native_path.h"
#include "orvel/core/text.h"

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

  void TakePermissionsOf(const fs::path& other) const {
    struct stat status {};
    if (stat(other.c_str(), &status) == 0) {
      static_cast<void>(
          fchmod(number_, status.st_mode & 0777));  // a nicety: its failure loses nothing
    }
  }

 private:
  fs::path path_;
  int number_;
};

constexpr mode_t kNewFileMode = 0666;

// Short and of its own extension, whatever the target's name: no listing of saved files takes it
// for one of them.
std::u16string TempName() {
  return u".save-" + utility::UTF8to16(utility::Guid::CreateUnique().AsUTF8String()) + u".tmp";
}

}  // namespace

SafeSave::SafeSave(const File& target) : target_(target), temp_(target.Parent(), TempName()) {
  const Descriptor created(ToNative(temp_.FullPath()), O_WRONLY | O_CREAT | O_EXCL, kNewFileMode);
  created.TakePermissionsOf(ToNative(target_.FullPath()));
}

SafeSave::~SafeSave() {
  std::error_code error;
  fs::remove(ToNative(temp_.FullPath()), error);
}

void SafeSave::Commit() {
  const fs::path target = ToNative(target_.FullPath());
  const fs::path temp = ToNative(temp_.FullPath());
  Descriptor(temp, O_RDONLY).Flush();
  std::error_code error;
  fs::rename(temp, target, error);
  if (error) Fail(target, error.value());
  const fs::path folder = target.parent_path();
  Descriptor(folder.empty() ? fs::path(".") : folder, O_RDONLY | O_DIRECTORY).Flush();
}

}  // namespace teskcore::filesupport
