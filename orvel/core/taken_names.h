#pragma once

#include <set>
#include <string>
#include <utility>

#include "orvel/core/export.h"

namespace teskcore::utility::FileUtils {

/// The file names, without extension, that stand in one folder, for choosing that of a new file
/// among them. A change and a choice take logarithmic time, but for names that some file system
/// takes for one, which are counted through.
class ORVEL_EXPORT TakenNames {
 public:
  /// Nothing happens when it is here, or not here, already.
  /// @{
  void Insert(const std::u16string& fileName);
  void Erase(const std::u16string& fileName);
  /// @}

  /// Whether this very name is here.
  bool Contains(const std::u16string& fileName) const { return names_.contains(fileName); }

  /// The file name for a name that a person typed: the one of those here that was made of this
  /// name, or else a new one, as `NormalizePathForSaving` makes it. When a file system may take
  /// that for one of those here, because they differ in case or in how accents are composed, "%~"
  /// and a number from 2 stand behind it.
  std::u16string Choose(const std::u16string& name) const;

 private:
  std::set<std::u16string> names_;
  std::multiset<std::u16string> folded_;  // one of each name: what a file system may take it for
  std::set<std::pair<std::string, std::u16string>> origins_;  // what a name may be made of, and it
};

}  // namespace teskcore::utility::FileUtils

namespace orvel {
namespace FileUtils = teskcore::utility::FileUtils;
}  // namespace orvel
