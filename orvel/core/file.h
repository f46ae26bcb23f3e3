#pragma once

#include <string>

#include "orvel/core/export.h"
#include "orvel/core/file_error.h"

namespace teskcore::filesupport {

class Dir;

/// The path of a file, which may or may not exist.
class ORVEL_EXPORT File {
 public:
  /// No file: the empty path.
  File() = default;

  /// The path as it stands; nothing is looked up.
  explicit File(const std::u16string& path) : path_(path) {}

  /// The file `name` in `folder`. Raises `file_exception` for a name that would lead elsewhere: an
  /// empty one, "." and "..", and any with a slash or a NUL in it.
  File(const Dir& folder, const std::u16string& name);

  /// The path as it was given.
  const std::u16string& FullPath() const { return path_; }

  /// The name without its extension. A leading dot begins no extension.
  std::u16string GetTitle() const;

  /// The extension with or without its dot; empty when there is none.
  std::u16string GetExtension(bool withDot) const;

  /// The folder that it stands in.
  Dir Parent() const;

  /// Whether a regular file stands there; a link counts as what it leads to.
  bool Exists() const;

  /// Creates an empty file. One that exists is emptied with `replace`; without it, it raises
  /// `file_exception`, and of several programs that create the same file one succeeds.
  void Create(bool replace) const;

  /// Raises `file_exception` when there is nothing to delete or it cannot be deleted. Of a link,
  /// the link goes.
  void Delete() const;

 private:
  std::u16string path_;
};

}  // namespace teskcore::filesupport

namespace orvel {
using teskcore::filesupport::File;
}  // namespace orvel
