#pragma once

#include <cstddef>
#include <filesystem>

namespace orvelhost {

/// A file under a passing name beside `target` that takes the target's name when it is complete,
/// and the permissions of an older file of that name. A link stays, and its target is written.
/// Whatever goes wrong before that leaves the target as it was, and the folder without the file. A
/// process that is killed leaves the file, until somebody writes to the same target, or clears it.
class TemporaryFile {
 public:
  /// Where a file of this name is written, also behind a link that leads to nothing yet. A link
  /// that leads in a circle stays, and cannot be written.
  static std::filesystem::path FollowLinks(std::filesystem::path path);

  /// Removes what killed processes have left for `target`; passing files that are in use stay.
  static void ClearAbandoned(const std::filesystem::path& target);

  /// Creates the file, and clears those that were abandoned. Throws AudioError when the folder is
  /// missing or not writable, and for a target that is a device, a folder or a pipe.
  explicit TemporaryFile(const std::filesystem::path& target);
  /// Removes the file unless it was committed.
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// The name that the file takes, behind links.
  const std::filesystem::path& Target() const { return target_; }

  /// The open file, for reading and writing; owned by this object.
  int Descriptor() const { return descriptor_; }

  /// Appends the bytes. Returns 0, or the system's error number.
  int Write(const void* bytes, std::size_t count) const;

  /// Waits until the content is on the disk, then gives the file the target's name, in the place of
  /// an older one if `replace` is set. Throws AudioError.
  void Commit(bool replace = true);

 private:
  std::filesystem::path target_;
  std::filesystem::path path_;
  int descriptor_ = -1;
};

}  // namespace orvelhost
