#include "orvel/presets/dir_based_presets_cache.h"

#include <algorithm>
#include <utility>

#include "orvel/core/file_utils.h"
#include "orvel/core/localizer.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"
#include "orvel/presets/preset_trace.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {
namespace {

constexpr char kCopiedPresetName[] = "$$$/orvel/Presets/CopiedPresetName=@0 copy";

// By title, so that "Voice" comes before "Voice copy", which then is the one that is taken for the
// copy: a blank sorts before the extension's dot.
bool ListPresetFiles(const Dir& folder, std::vector<std::pair<std::u16string, File>>& byTitle) {
  const bool isListed = ForEachFile(folder, IsPresetFileName, [&byTitle](const File& file) {
    byTitle.emplace_back(file.GetTitle(), file);
  });
  std::sort(byTitle.begin(), byTitle.end(),
            [](const auto& left, const auto& right) { return left.first < right.first; });
  return isListed;
}

}  // namespace

template <typename T>
DirBasedPresetsCache<T>::DirBasedPresetsCache(const Dir& folder, const Adopt& adopt)
    : folder_(folder), adopt_(adopt) {}

template <typename T>
bool DirBasedPresetsCache<T>::Load() {
  entries_.clear();
  titles_.clear();
  names_.reset();
  std::vector<std::pair<Title, File>> files;
  bool isWhole = ListPresetFiles(folder_, files);
  for (const auto& [title, file] : files) isWhole &= LoadFile(title, file);
  return isWhole;
}

template <typename T>
bool DirBasedPresetsCache<T>::LoadFile(const Title& title, const File& file) {
  Preset<T> preset;
  if (!ReadPresetFile(file, preset)) return false;
  bool changed = adopt_(preset);
  if (titles_.contains(preset.Guid)) {
    TracePresets("Fixing preset with duplicate GUID: " + ShownPath(file.FullPath()));
    preset.Guid = Guid::CreateUnique();
    preset.Name = UTF16to8(ZString(kCopiedPresetName, ZString(preset.Name)));
    changed = true;
  }
  // A repair that cannot be written holds in memory all the same.
  if (changed) WritePresetFile(file, preset);
  Insert(title, std::move(preset));
  return true;
}

template <typename T>
const Preset<T>* DirBasedPresetsCache<T>::Find(const Guid& guid) const {
  const auto title = titles_.find(guid);
  return title == titles_.end() ? nullptr : &entries_.at(title->second);
}

template <typename T>
void DirBasedPresetsCache<T>::AppendTo(std::vector<Preset<T>>& presets) const {
  for (const auto& [title, preset] : entries_) presets.push_back(preset);
}

template <typename T>
bool DirBasedPresetsCache<T>::HasName(const std::string& name) const {
  return !ForEach([&name](const Preset<T>& preset) { return preset.Name != name; });
}

template <typename T>
bool DirBasedPresetsCache<T>::ForEach(
    const boost::function<bool(const Preset<T>& preset)>& visit) const {
  return std::ranges::all_of(entries_, [&visit](const auto& entry) { return visit(entry.second); });
}

template <typename T>
bool DirBasedPresetsCache<T>::Save(Preset<T> preset) {
  if (preset.Guid.IsNull() || !CanNameAPreset(preset.Name)) return false;
  adopt_(preset);
  Title title;
  if (!ChooseTitle(preset, title)) return false;
  // A preset of another name, in a file that was renamed by hand, moves to a file of its own name.
  const auto occupant = entries_.find(title);
  Title aside;
  if (occupant != entries_.end() && occupant->second.Guid != preset.Guid &&
      occupant->second.Name != preset.Name) {
    const std::u16string name = UTF8to16(occupant->second.Name);
    aside =
        File(folder_, FileUtils::UniqueFileName(folder_, name, kPresetFileExtension)).GetTitle();
    if (!Move(title, aside)) return false;
  }
  if (Put(title, preset)) return true;
  if (!aside.empty()) Move(aside, title);
  return false;
}

template <typename T>
bool DirBasedPresetsCache<T>::Remove(const Guid& guid) {
  const auto title = titles_.find(guid);
  if (title == titles_.end() || !DeletePresetFile(FileOf(title->second))) return false;
  Forget(Title(title->second));
  return true;
}

template <typename T>
File DirBasedPresetsCache<T>::FileOf(const Title& title) const {
  return {folder_, title + kPresetFileExtension};
}

// Also of files that hold no preset: some file system may take a new name for theirs.
template <typename T>
bool DirBasedPresetsCache<T>::ListNames() {
  FileUtils::TakenNames names;
  const auto isOfPresets = [](const Title& file) { return file.ends_with(kPresetFileExtension); };
  const bool isListed = ForEachFile(folder_, isOfPresets,
                                    [&names](const File& file) { names.Insert(file.GetTitle()); });
  if (isListed) names_ = std::move(names);
  return isListed;
}

// The file for `preset`. One that is saved again under its name stays where it is while the file of
// that name is that of another preset so called, or of nobody knows what. False when the folder
// cannot be listed.
template <typename T>
bool DirBasedPresetsCache<T>::ChooseTitle(const Preset<T>& preset, Title& title) {
  const std::u16string name = UTF8to16(preset.Name);
  const auto own = titles_.find(preset.Guid);
  const bool keepsName = own != titles_.end() && entries_.at(own->second).Name == preset.Name;
  title = FileUtils::NormalizePathForSaving(name);
  if (keepsName && own->second == title) return true;
  bool isFree = false;
  const auto choose = [&] {
    if (own != titles_.end()) names_->Erase(own->second);
    title = names_->Choose(name);
    isFree = !names_->Contains(title);
    if (own != titles_.end()) names_->Insert(own->second);
  };
  if (!names_ && !ListNames()) return false;
  choose();
  // What somebody put there since the folder was listed is seen where it would be written over.
  if (isFree && FileOf(title).Exists()) {
    if (!ListNames()) return false;
    choose();
  }
  const auto occupant = entries_.find(title);
  const bool isTwins = occupant == entries_.end() || occupant->second.Name == preset.Name;
  if (keepsName && !isFree && isTwins) title = own->second;
  return true;
}

template <typename T>
bool DirBasedPresetsCache<T>::Move(const Title& from, const Title& to) {
  if (!MovePresetPath(FileOf(from).FullPath(), FileOf(to).FullPath())) return false;
  const Preset<T> preset = entries_.at(from);
  Forget(from);
  Insert(to, preset);
  return true;
}

// A preset that has another file by now is written there, and its file then renamed: at no instant
// do two files hold it. What stands at `title` is replaced.
template <typename T>
bool DirBasedPresetsCache<T>::Put(const Title& title, const Preset<T>& preset) {
  const auto known = titles_.find(preset.Guid);
  const Title own = known == titles_.end() ? title : known->second;
  if (!WritePresetFile(FileOf(own), preset)) return false;
  if (own != title) {
    if (!MovePresetPath(FileOf(own).FullPath(), FileOf(title).FullPath())) {
      WritePresetFile(FileOf(own), entries_.at(own));
      return false;
    }
    Forget(own);
  }
  Insert(title, preset);
  return true;
}

template <typename T>
void DirBasedPresetsCache<T>::Insert(const Title& title, Preset<T> preset) {
  const auto replaced = entries_.find(title);
  if (replaced != entries_.end()) titles_.erase(replaced->second.Guid);
  titles_[preset.Guid] = title;
  entries_.insert_or_assign(title, std::move(preset));
  if (names_) names_->Insert(title);
}

template <typename T>
void DirBasedPresetsCache<T>::Forget(const Title& title) {
  const auto entry = entries_.find(title);
  titles_.erase(entry->second.Guid);
  entries_.erase(entry);
  if (names_) names_->Erase(title);
}

template class DirBasedPresetsCache<UserPresetData>;

}  // namespace orvel
