#include "orvel/core/file.h"

#include <filesystem>
#include <fstream>
#include <system_error>

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
    : path_(FromNative(ToNative(folder.FullPath()) / ToNative(name))) {}

std::u16string File::GetTitle() const { return FromNative(ToNative(path_).stem()); }

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
  if (!replace && Exists()) Fail(path, "exists already");
  if (!std::ofstream(path, std::ios::binary | std::ios::trunc)) Fail(path, "cannot be created");
}

void File::Delete() const {
  const fs::path path = ToNative(path_);
  std::error_code error;
  if (fs::is_directory(fs::symlink_status(path, error))) Fail(path, "is a folder");
  if (!fs::remove(path, error)) Fail(path, error ? error.message() : "does not exist");
}

}  // namespace teskcore::filesupport
