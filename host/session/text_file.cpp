#include "host/session/text_file.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <unistd.h>

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
  TemporaryFile file(path);
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = write(file.Descriptor(), text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      throw AudioError("cannot write " + Quoted(path) + ": " +
                       std::generic_category().message(errno));
    }
    done += static_cast<std::size_t>(count);
  }
  file.Commit();
}

}  // namespace orvelhost
