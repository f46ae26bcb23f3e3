#pragma once

#include <cstdint>
#include <filesystem>
#include <tuple>

namespace orvelhost {

/// What of a file's entry in its folder changes with its content. A value.
struct FileIdentity {
  std::uint64_t device;
  std::uint64_t inode;
  std::int64_t size;            ///< in bytes
  std::int64_t writtenSeconds;  ///< when the content was last written, since 1970
  std::int64_t writtenNanoseconds;

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
  /// An order to keep them by, without a meaning.
  friend bool operator<(const FileIdentity& a, const FileIdentity& b) {
    return std::tie(a.device, a.inode, a.size, a.writtenSeconds, a.writtenNanoseconds) <
           std::tie(b.device, b.inode, b.size, b.writtenSeconds, b.writtenNanoseconds);
  }
};

/// Of the file behind the name, through links. Throws AudioError, "cannot read" and why, when there
/// is none.
FileIdentity IdentityOf(const std::filesystem::path& path);

}  // namespace orvelhost
