#include "orvel/core/byte_stream.h"

#include <cerrno>
#include <system_error>

#include <boost/numeric/conversion/cast.hpp>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "orvel/core/native_path.h"

namespace teskcore::filesupport {
namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& cause) {
  throw file_exception(path + ": " + cause);
}

}  // namespace

// Unbuffered, for it is read in large blocks. What is no file is found out about when it is open: a
// pipe that nobody writes to must not be waited for, and the path may lead elsewhere by then.
IPlatformByteStream::IPlatformByteStream(const File& file, std::uint32_t flags)
    : path_(ToNative(file.FullPath()).string()), descriptor_(-1) {
  if ((flags & ~kStreamRead) != 0) Fail(path_, "a stream can only be opened for reading");
  descriptor_ = open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) Fail(path_, std::generic_category().message(errno));
  struct stat status {};
  if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) return;
  close(descriptor_);
  Fail(path_, "is not a file");
}

IPlatformByteStream::~IPlatformByteStream() { close(descriptor_); }

std::uint64_t IPlatformByteStream::Length() const {
  struct stat status {};
  if (fstat(descriptor_, &status) != 0) Fail(path_, std::generic_category().message(errno));
  return static_cast<std::uint64_t>(status.st_size);
}

std::uint32_t IPlatformByteStream::ReadBlock(void* buffer, std::uint32_t count) {
  std::uint32_t read = 0;
  while (read < count) {
    const ssize_t got = ::read(descriptor_, static_cast<char*>(buffer) + read, count - read);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail(path_, std::generic_category().message(errno));
    if (got == 0) break;
    read += static_cast<std::uint32_t>(got);
  }
  return read;
}

std::string ReadWholeFile(const File& file) {
  IPlatformByteStream stream(file);
  const auto length = boost::numeric_cast<std::uint32_t>(stream.Length());
  std::string bytes(length, '\0');
  bytes.resize(stream.ReadBlock(bytes.data(), length));
  return bytes;
}

}  // namespace teskcore::filesupport
