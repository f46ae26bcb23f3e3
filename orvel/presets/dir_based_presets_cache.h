#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <boost/function.hpp>

#include "orvel/core/dir.h"
#include "orvel/core/export.h"
#include "orvel/core/file.h"
#include "orvel/core/guid.h"
#include "orvel/core/taken_names.h"
#include "orvel/presets/preset.h"

namespace orvel {

/// The presets of one folder, one a file, in memory and on disk alike. Instantiated for
/// `UserPresetData`.
template <typename T>
class ORVEL_EXPORT DirBasedPresetsCache {
 public:
  /// Makes a preset one of this folder's, and tells whether it had to change it.
  using Adopt = boost::function<bool(Preset<T>& preset)>;

  /// Reads nothing yet; the folder may or may not exist. `adopt` is asked for every preset that is
  /// loaded or saved.
  DirBasedPresetsCache(const Dir& folder, const Adopt& adopt);

  /// Replaces what is in memory by what stands in the folder. A file that cannot be read stays as
  /// it is and is passed over; of two presets with one guid the second, by file name, becomes a
  /// copy with a guid and a name of its own. False when the folder cannot be listed or a file in it
  /// cannot be read: there may be presets that nobody sees.
  bool Load();

  /// Null when there is none.
  const Preset<T>* Find(const Guid& guid) const;

  /// Whether a preset of this name, as it is stored, is here.
  bool HasName(const std::string& name) const;

  /// The presets in the order of their file names; `visit` answers whether to go on.
  bool ForEach(const boost::function<bool(const Preset<T>& preset)>& visit) const;

  /// Appends the presets in the same order.
  void AppendTo(std::vector<Preset<T>>& presets) const;

  /// Writes a preset into the file of its name and files it in memory; one of the same guid, or
  /// what stands in that file, is replaced. A preset of another name whose file was given this name
  /// by hand before the folder was read moves to a file of its own name first. False when it cannot
  /// be written; disk and memory are then as they were.
  bool Save(Preset<T> preset);

  /// Deletes a preset's file and forgets the preset; false when there is none or its file stays.
  bool Remove(const Guid& guid);

 private:
  using Title = std::u16string;  // a file name without its extension
  using Entries = std::map<Title, Preset<T>>;

  File FileOf(const Title& title) const;
  bool LoadFile(const Title& title, const File& file);
  bool ListNames();
  bool ChooseTitle(const Preset<T>& preset, Title& title);
  bool Move(const Title& from, const Title& to);
  bool Put(const Title& title, const Preset<T>& preset);
  void Insert(const Title& title, Preset<T> preset);
  void Forget(const Title& title);

  Dir folder_;
  Adopt adopt_;
  Entries entries_;
  std::map<Guid, Title> titles_;
  std::optional<FileUtils::TakenNames> names_;  // of all files; listed when first asked for
};

}  // namespace orvel
