#include "host/render/input_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

/// A descriptor that is closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(number_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return number_; }

 private:
  int number_;
};

/// Waits until there is something to read, or the end.
void Await(int pipe, const Progress& progress) {
  constexpr int kPatience = 100;  // ms from one look at the progress to the next
  pollfd one{pipe, POLLIN, 0};
  do {
    if (progress && !progress(-1.0)) throw Cancelled();
  } while (poll(&one, 1, kPatience) <= 0);
}

}  // namespace

InputFile::InputFile(const std::filesystem::path& path, const Progress& progress)
    : path_(path), readable_(path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (std::filesystem::is_fifo(status) || std::filesystem::is_character_file(status)) {
    CopyPipe(progress);
  } else {
    identity_ = IdentityOf(path);
  }
}

void InputFile::CopyPipe(const Progress& progress) {
  // Opened so, a pipe that nobody writes to yet does not keep the program from being interrupted.
  const Descriptor pipe(open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (pipe.Get() < 0) throw AudioError("read", path_, errno);
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  std::string name = (folder / "orvel-XXXXXX").string();
  const std::string task = "keep a copy in " + Quoted(folder) + " of";
  const int descriptor = mkostemp(name.data(), O_CLOEXEC);
  if (descriptor < 0) throw AudioError(task, path_, errno);
  unlink(name.c_str());
  copy_.reset(fdopen(descriptor, "wb"));
  std::vector<char> piece(1 << 16);
  while (true) {
    Await(pipe.Get(), progress);
    const ssize_t count = read(pipe.Get(), piece.data(), piece.size());
    if (count == 0) break;
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) continue;
    if (count < 0) throw AudioError("read", path_, errno);
    const auto length = static_cast<std::size_t>(count);
    if (std::fwrite(piece.data(), 1, length, copy_.get()) != length) {
      throw AudioError(task, path_, errno);
    }
  }
  if (std::fflush(copy_.get()) != 0) throw AudioError(task, path_, errno);
  readable_ = "/proc/self/fd/" + std::to_string(descriptor);
}

void InputFile::CheckUnchanged() const {
  if (identity_ && IdentityOf(path_) != *identity_) {
    throw AudioError(Quoted(path_) + " was changed while it was read");
  }
}

}  // namespace orvelhost
