#include "host/session/text_file.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/audio/temporary_file.h"

namespace orvelhost {
namespace {

constexpr std::size_t kMaxLength = 256 << 20;
constexpr char kTooLong[] = "it is too long";

}  // namespace

std::string ReadTextFile(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw AudioError("read", path, "it is a folder");
  std::ifstream file(path, std::ios::binary);
  if (!file) throw AudioError("read", path, errno);
  std::string text;
  char piece[1 << 16];
  while (file.read(piece, sizeof piece) || file.gcount() > 0) {
    text.append(piece, static_cast<std::size_t>(file.gcount()));
    if (text.size() > kMaxLength) throw AudioError("read", path, kTooLong);
  }
  if (file.bad()) throw AudioError("read", path, errno);
  return text;
}

void WriteTextFile(const std::filesystem::path& path, const std::string& text) {
  if (text.size() > kMaxLength) throw AudioError("write", path, kTooLong);
  TemporaryFile file(path);
  if (const int error = file.Write(text.data(), text.size()); error != 0) {
    throw AudioError("write", path, error);
  }
  file.Commit();
}

}  // namespace orvelhost
