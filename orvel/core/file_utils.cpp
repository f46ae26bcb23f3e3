#include "orvel/core/file_utils.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include "orvel/core/file_error.h"
#include "orvel/core/native_path.h"
#include "orvel/core/text.h"

namespace teskcore::utility::FileUtils {

void SimpleWriteStringToFile(const std::u16string& path, const std::string& text) {
  const std::string native = filesupport::ToNative(path).string();
  const auto check = [&native](bool done) {
    if (done) return;
    throw filesupport::file_exception(native + ": " + std::generic_category().message(errno));
  };
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file(std::fopen(native.c_str(), "wb"));
  check(file != nullptr);
  check(std::fwrite(text.data(), 1, text.size(), file.get()) == text.size());
  // A full disk may show only when the last block is handed over.
  check(std::fclose(file.release()) == 0);
}

std::u16string UniqueFileName(const filesupport::Dir& folder, const std::u16string& name,
                              const std::u16string& extension) {
  std::u16string candidate = NormalizePathForSaving(name) + extension;
  const auto taken = [&folder](const std::u16string& fileName) {
    const std::u16string path = filesupport::File(folder, fileName).FullPath();
    std::error_code error;
    return std::filesystem::exists(
        std::filesystem::symlink_status(filesupport::ToNative(path), error));
  };
  for (int number = 2; taken(candidate); ++number) {
    const std::u16string numbered = name + u" " + UTF8to16(std::to_string(number));
    candidate = NormalizePathForSaving(numbered) + extension;
  }
  return candidate;
}

}  // namespace teskcore::utility::FileUtils
