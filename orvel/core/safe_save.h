#pragma once

#include "orvel/core/export.h"
#include "orvel/core/file.h"

namespace teskcore::filesupport {

/// Replaces a file as a whole: what is written goes to a temporary file in the same folder, and
/// `Commit` puts it in the target's place. A process that dies at any instant, or a write that
/// fails, leaves the old file or the new one, never a part of either. The temporary file of a save
/// that is not committed goes with this object.
///
/// A link is followed: what it leads to is replaced, and the link stays; or, when asked for, the
/// link is replaced. A target that may not be written is replaced all the same, as long as its
/// folder may be written.
class ORVEL_EXPORT SafeSave {
 public:
  /// What becomes of a link in the target's place.
  enum class Links {
    kFollow,   ///< the file that links at the target lead to is saved
    kReplace,  ///< the target is, in the place of a link
  };

  /// Creates the temporary file, empty. Raises `file_exception`, also when the target is something
  /// else than a regular file: a folder, a pipe, a device.
  explicit SafeSave(const File& target, Links links = Links::kFollow);
  ~SafeSave();
  SafeSave(const SafeSave&) = delete;
  SafeSave& operator=(const SafeSave&) = delete;

  /// The file to write; it is there until `Commit`.
  const File& GetTempFile() const { return temp_; }

  /// Gives the temporary file the target's permissions when there is a target, brings it to the
  /// disk, renames it to the target and brings the folder to the disk. Raises `file_exception`; the
  /// target is then as it was, save when only the very last step failed. A second call raises it
  /// too, for the temporary file is gone.
  void Commit();

 private:
  File target_;
  File temp_;
};

}  // namespace teskcore::filesupport

namespace orvel {
using teskcore::filesupport::SafeSave;
}  // namespace orvel
