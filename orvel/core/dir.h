#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/function.hpp>

#include "orvel/core/export.h"
#include "orvel/core/file.h"
#include "orvel/core/file_error.h"

namespace teskcore::filesupport {

/// Walks a listing that was taken when the walk began, so that files may come and go meanwhile.
template <typename Entry>
class ListingIterator {
 public:
  /// What the standard asks of a forward iterator.
  /// @{
  using value_type = Entry;
  using difference_type = std::ptrdiff_t;
  using reference = const Entry&;
  using pointer = const Entry*;
  using iterator_category = std::forward_iterator_tag;
  /// @}

  /// The end of every walk.
  ListingIterator() = default;

  /// The begin of a walk over `entries`.
  explicit ListingIterator(std::vector<Entry> entries) {
    if (!entries.empty()) entries_ = std::make_shared<const std::vector<Entry>>(std::move(entries));
  }

  /// As of any forward iterator; not to be used at the end.
  /// @{
  reference operator*() const { return (*entries_)[position_]; }
  pointer operator->() const { return &**this; }
  ListingIterator& operator++() {
    if (++position_ == entries_->size()) *this = ListingIterator();
    return *this;
  }
  ListingIterator operator++(int) {
    ListingIterator before = *this;
    ++*this;
    return before;
  }
  friend bool operator==(const ListingIterator& left, const ListingIterator& right) {
    return left.entries_ == right.entries_ && left.position_ == right.position_;
  }
  /// @}

 private:
  std::shared_ptr<const std::vector<Entry>> entries_;  // null at the end
  std::size_t position_ = 0;
};

/// The path of a folder, which may or may not exist.
class ORVEL_EXPORT Dir {
 public:
  /// Whether a name is listed.
  using Filter = boost::function<bool(const std::u16string& name)>;

  /// Whether the listing ends here.
  using Cancel = boost::function<bool()>;

  /// What becomes of links in a listing: they count as what they lead to, or are left out.
  enum class Links { kFollow, kSkip };

  /// Over folders.
  using SubdirIterator = ListingIterator<Dir>;

  /// Over files.
  using FileIterator = ListingIterator<File>;

  /// No folder: the empty path.
  Dir() = default;

  /// Slashes at the end are left out, but the root's.
  explicit Dir(const std::u16string& path);

  /// The folder `name` in `parent`. Raises `dir_exception` for a name that would lead elsewhere: an
  /// empty one, "." and "..", and any with a slash or a NUL in it.
  Dir(const Dir& parent, const std::u16string& name);

  /// The user's preferences folder: the one that the host set, else $XDG_CONFIG_HOME or ~/.config
  /// (/.config where there is no home). It need not exist yet.
  static Dir PrefDir();

  /// Sets the preferences folder for the rest of the program; before `Initialize`, which reads it.
  static void SetPrefDir(const Dir& folder);

  /// The folder above; the root is its own parent.
  Dir Parent() const;

  /// The last part of the path; the root has no name.
  std::u16string GetName() const;

  /// The path as it was given, without slashes at the end.
  const std::u16string& FullPath() const { return path_; }

  /// Whether a folder stands there; a link counts as what it leads to.
  bool Exists() const;

  /// Creates the folder and its missing parents; one that exists is no error. Raises
  /// `dir_exception`.
  void Create() const;

  /// Deletes an empty folder; of a link, the link. Raises `dir_exception` when it is not empty or
  /// not there.
  void Delete() const;

  /// The direct sub-folders, sorted by name. `filter` keeps the names for which it answers true;
  /// `cancel` ends the listing as soon as it answers true; both may be empty. Raises
  /// `dir_exception` when the folder cannot be listed.
  SubdirIterator BeginSubdirs(const Filter& filter = Filter(), const Cancel& cancel = Cancel(),
                              Links links = Links::kFollow) const;

  /// The end of `BeginSubdirs`.
  SubdirIterator EndSubdirs() const { return SubdirIterator(); }

  /// The same for the direct regular files.
  FileIterator BeginFiles(const Filter& filter = Filter(), const Cancel& cancel = Cancel(),
                          Links links = Links::kFollow) const;

  /// The end of `BeginFiles`.
  FileIterator EndFiles() const { return FileIterator(); }

 private:
  std::u16string path_;
};

}  // namespace teskcore::filesupport

namespace orvel {
using teskcore::filesupport::Dir;
}  // namespace orvel
