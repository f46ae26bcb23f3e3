#include "host/session/text_file.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/audio/temporary_file.h"

namespace orvelhost {
namespace {

constexpr std::streamoff kMaxLength = 256 << 20;

}  // namespace

std::string ReadTextFile(const std::filesystem::path& path) {
  const auto fail = [&path](const std::string& cause) {
    throw std::runtime_error("cannot read " + Quoted(path) + ": " + cause);
  };
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) fail("it is a folder");
  std::ifstream file(path, std::ios::binary);
  if (!file) fail(std::generic_category().message(errno));
  std::string text;
  char piece[1 << 16];
  while (file.read(piece, sizeof piece) || file.gcount() > 0) {
    text.append(piece, static_cast<std::size_t>(file.gcount()));
    if (static_cast<std::streamoff>(text.size()) > kMaxLength) fail("it is too long");
  }
  if (file.bad()) fail(std::generic_category().message(errno));
  return text;
}

void WriteTextFile(const std::filesystem::path& path, const std::string& text) {
  const auto fail = [&path](const std::string& cause) {
    throw AudioError("cannot write " + Quoted(path) + ": " + cause);
  };
  if (static_cast<std::streamoff>(text.size()) > kMaxLength) fail("it is too long");
  TemporaryFile file(path);
  if (const int error = file.Write(text.data(), text.size()); error != 0) {
    fail(std::generic_category().message(error));
  }
  file.Commit();
}

}  // namespace orvelhost
