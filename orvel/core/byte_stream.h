#pragma once

#include <cstdint>
#include <string>

#include "orvel/core/export.h"
#include "orvel/core/file.h"

namespace teskcore::filesupport {

/// How a stream is opened.
enum StreamFlags : std::uint32_t {
  kStreamRead = 1,  ///< for reading
};

/// Reads a file. Every operation raises `file_exception` when it fails.
class ORVEL_EXPORT IPlatformByteStream {
 public:
  /// Opens the file for reading, which is all that `flags` of `StreamFlags` can ask for.
  explicit IPlatformByteStream(const File& file, std::uint32_t flags = kStreamRead);
  ~IPlatformByteStream();
  IPlatformByteStream(const IPlatformByteStream&) = delete;
  IPlatformByteStream& operator=(const IPlatformByteStream&) = delete;

  /// In bytes.
  std::uint64_t Length() const;

  /// Reads the next bytes into `buffer` and returns their number: `count`, or fewer at the end of
  /// the file.
  std::uint32_t ReadBlock(void* buffer, std::uint32_t count);

 private:
  std::string path_;
  int descriptor_;
};

/// The whole content of `file`. Raises `file_exception`; a file of 4 GiB or more raises
/// `boost::numeric::bad_numeric_cast`, since a block's length is an unsigned 32-bit number.
ORVEL_EXPORT std::string ReadWholeFile(const File& file);

}  // namespace teskcore::filesupport

namespace orvel {
using teskcore::filesupport::IPlatformByteStream;
using teskcore::filesupport::ReadWholeFile;
}  // namespace orvel
