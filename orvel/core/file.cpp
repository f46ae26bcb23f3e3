#include "orvel/core/file.h"

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "orvel/core/dir.h"
#include "orvel/core/native_path.h"

namespace teskcore::filesupport {
namespace fs = std::filesystem;

namespace {

[[noreturn]] void Fail(const fs::path& path, const std::string& cause) {
  throw file_exception(path.string() + ": " + cause);
}

}  // namespace

File::File(const Dir& folder, const std::u16string& name)
    : path_(JoinPath(folder.FullPath(), name)) {
  if (!IsPathElement(name)) Fail(ToNative(path_), "is not the name of a file");
}

std::u16string File::GetTitle() const {
  const std::u16string name = FileNameOf(path_);
  const std::size_t dot = name.rfind(u'.');
  return dot == 0 || name == u".." ? name : name.substr(0, dot);
}

std::u16string File::GetExtension(bool withDot) const {
  const std::u16string extension = FromNative(ToNative(path_).extension());
  return withDot || extension.empty() ? extension : extension.substr(1);
}

Dir File::Parent() const { return Dir(FromNative(ToNative(path_).parent_path())); }

bool File::Exists() const {
  std::error_code error;
  return fs::is_regular_file(ToNative(path_), error);
}

void File::Create(bool replace) const {
  const fs::path path = ToNative(path_);
  constexpr mode_t kNewFileMode = 0666;
  const int ifThere = replace ? O_TRUNC : O_EXCL;
  const int created = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | ifThere, kNewFileMode);
  if (created < 0) Fail(path, std::generic_category().message(errno));
  close(created);
}

void File::Delete() const {
  const fs::path path = ToNative(path_);
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(path, error))) Fail(path, "is a folder");
  if (!fs::remove(path, error)) Fail(path, error ? error.message() : "does not exist");
}

}  // namespace teskcore::filesupport
