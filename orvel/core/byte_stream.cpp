#include "orvel/core/byte_stream.h"

#include <cerrno>
#include <system_error>

#include <boost/numeric/conversion/cast.hpp>
#include <sys/stat.h>

#include "orvel/core/native_path.h"

namespace teskcore::filesupport {
namespace {

[[noreturn]] void Fail(const std::string& path, const std::string& cause) {
  throw file_exception(path + ": " + cause);
}

}  // namespace

IPlatformByteStream::IPlatformByteStream(const File& file, std::uint32_t flags)
    : path_(ToNative(file.FullPath()).string()) {
  if (flags != kStreamRead) Fail(path_, "a stream can only be opened for reading");
  // A folder opens on some platforms, and fails at the first read with a message that helps nobody.
  if (!file.Exists()) Fail(path_, "is not a file");
  stream_.reset(std::fopen(path_.c_str(), "rb"));
  if (!stream_) Fail(path_, std::generic_category().message(errno));
}

std::uint64_t IPlatformByteStream::Length() const {
  // Of the open file: the path may lead to another by now.
  struct stat status {};
  if (fstat(fileno(stream_.get()), &status) != 0)
    Fail(path_, std::generic_category().message(errno));
  return static_cast<std::uint64_t>(status.st_size);
}

std::uint32_t IPlatformByteStream::ReadBlock(void* buffer, std::uint32_t count) {
  const std::size_t read = std::fread(buffer, 1, count, stream_.get());
  if (std::ferror(stream_.get()) != 0) Fail(path_, std::generic_category().message(errno));
  return static_cast<std::uint32_t>(read);
}

std::string ReadWholeFile(const File& file) {
  IPlatformByteStream stream(file);
  const auto length = boost::numeric_cast<std::uint32_t>(stream.Length());
  std::string bytes(length, '\0');
  bytes.resize(stream.ReadBlock(bytes.data(), length));
  return bytes;
}

}  // namespace teskcore::filesupport
