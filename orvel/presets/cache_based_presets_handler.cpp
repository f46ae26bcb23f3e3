#include "orvel/presets/cache_based_presets_handler.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "orvel/core/collation.h"
#include "orvel/core/flag_scope.h"
#include "orvel/core/localizer.h"
#include "orvel/presets/preset_file.h"

namespace orvel {
namespace {

using teskcore::utility::FlagScope;

constexpr char kCustomPresetName[] = "$$$/orvel/Presets/CustomPresetName=(Custom)";
constexpr char16_t kModifiedSuffix[] = u" *";

// The names of the default entry: of this library, and of the documents that it comes with.
constexpr const char* kDefaultNames[] = {
    "$$$/orvel/Presets/DefaultPresetName=(Default)",
    "$$$/app/Presets/DefaultPresetName=(Default)",
};

bool IsDefaultName(const std::string& name) {
  return std::ranges::find(kDefaultNames, name) != std::end(kDefaultNames);
}

// Whether a stored name reads like `name`, which is shown as `shown`. Only keys are localised, and
// few names are: the others are compared as they stand.
bool AreShownAlike(const std::string& stored, const std::string& name,
                   const std::u16string& shown) {
  if (stored == name) return true;
  const auto isKey = [](const std::string& text) { return text.starts_with("$$$/"); };
  return (isKey(stored) || isKey(name)) && ZString(stored) == shown;
}

bool RemoveFromCache(PresetsCache& cache, const Preset<UserPresetData>& preset) {
  return cache.RemovePreset(preset.Guid, preset.PresetData.Config);
}

bool RemoveFromCache(PresetsCache& cache, const Preset<ConfigPresetData>& preset) {
  return cache.RemoveConfigPreset(preset.Guid);
}

}  // namespace

template <typename T, typename Cache>
CacheBasedPresetsHandler<T, Cache>::CacheBasedPresetsHandler(
    const boost::intrusive_ptr<Cache>& cache, const Filter& filter, const Provider& provider)
    : cache_(cache), filter_(filter), provider_(provider) {}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::ShowsEditsAsCustom(const std::string& name) const {
  return IsDefaultName(name) || (cache_ && cache_->IsFactoryPresetName(name));
}

template <typename T, typename Cache>
auto CacheBasedPresetsHandler<T, Cache>::GetCurrentPreset() const -> PresetEntry {
  return {selected_.Guid, GetSelectedPreset().Name};
}

template <typename T, typename Cache>
Preset<T> CacheBasedPresetsHandler<T, Cache>::GetSelectedPreset() const {
  Preset<T> preset = selected_;
  Find(selected_.Guid, preset);
  return preset;
}

// Of several presets with this guid, which stand in different folders then, the listed one.
template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::Find(const Guid& guid, Preset<T>& preset) const {
  if (!cache_ || !cache_->FindPreset(guid, preset)) return false;
  if (!filter_ || filter_(preset)) return true;
  const boost::function<bool(const Preset<T>&)> isOther = [&](const Preset<T>& other) {
    const bool isMeant = other.Guid == guid && filter_(other);
    if (isMeant) preset = other;
    return !isMeant;
  };
  cache_->ForEachPreset(isOther);
  return true;
}

template <typename T, typename Cache>
auto CacheBasedPresetsHandler<T, Cache>::GetPresetList() const -> std::vector<PresetEntry> {
  struct Row {
    PresetEntry entry;
    bool isDefault;
    std::u16string shownName;
  };
  std::vector<Row> rows;
  const boost::function<bool(const Preset<T>&)> add = [&](const Preset<T>& preset) {
    if (!filter_ || filter_(preset)) {
      rows.push_back(
          {{preset.Guid, preset.Name}, IsDefaultName(preset.Name), ZString(preset.Name)});
    }
    return true;
  };
  if (cache_) cache_->ForEachPreset(add);
  std::ranges::stable_sort(rows, [](const Row& left, const Row& right) {
    if (left.isDefault != right.isDefault) return left.isDefault;
    return teskcore::utility::CompareForDisplay(left.shownName, right.shownName) < 0;
  });
  std::vector<PresetEntry> list;
  list.reserve(rows.size());
  for (auto& row : rows) list.push_back(std::move(row.entry));
  return list;
}

template <typename T, typename Cache>
std::u16string CacheBasedPresetsHandler<T, Cache>::GetDisplayName() const {
  const Preset<T> selected = GetSelectedPreset();
  const std::u16string name = ZString(selected.Name);
  if (working_ == selected.PresetData) return name;
  if (ShowsEditsAsCustom(selected.Name)) return ZString(kCustomPresetName);
  return name + kModifiedSuffix;
}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::RequestCurrentData(T& data) {
  return provider_(data);
}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::SaveAsNew(const std::string& name) {
  Preset<T> preset;
  preset.Guid = Guid::CreateUnique();
  preset.Name = name;
  preset.PresetData = working_;
  return Save(preset);
}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::Select(const Guid& guid) {
  Preset<T> preset;
  if (!Find(guid, preset)) return false;
  const Verifier verifier = verifier_;  // it may replace itself
  if (verifier && !verifier(preset)) return false;
  SetState(preset, preset.PresetData);
  return true;
}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::Save(const Preset<T>& preset) {
  // One that would not be listed afterwards belongs to another handler.
  if (!cache_ || (filter_ && !filter_(preset)) ||
      CheckPresetName(preset.Name, preset.Guid) != PresetNameStatus::kUsable) {
    return false;
  }
  Preset<T> saved = preset;
  {
    const FlagScope changing(isChangingCache_);
    if (!cache_->SavePreset(preset)) return false;
  }
  Find(preset.Guid, saved);  // fitted to its folder
  SetState(saved, saved.PresetData);
  return true;
}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::Remove(const Guid& guid) {
  Preset<T> preset;
  if (!Find(guid, preset) || (filter_ && !filter_(preset))) return false;
  bool isRemoved = false;
  {
    const FlagScope changing(isChangingCache_);
    isRemoved = RemoveFromCache(*cache_, preset);
  }
  // It may be gone although not all of its files are.
  if (!isRemoved && Find(guid, preset)) return false;
  SelectDefault();
  return isRemoved;
}

template <typename T, typename Cache>
void CacheBasedPresetsHandler<T, Cache>::SetWorkingData(const T& data) {
  SetState(GetSelectedPreset(), data);
}

template <typename T, typename Cache>
void CacheBasedPresetsHandler<T, Cache>::Revert() {
  const Preset<T> stored = GetSelectedPreset();
  SetState(stored, stored.PresetData);
}

template <typename T, typename Cache>
void CacheBasedPresetsHandler<T, Cache>::Restore(const Preset<T>& preset, const T& data) {
  SetState(preset, data);
}

template <typename T, typename Cache>
void CacheBasedPresetsHandler<T, Cache>::SelectDefault() {
  Preset<T> preset;
  GetDefaultPreset(preset);
  SetState(preset, preset.PresetData);
}

template <typename T, typename Cache>
bool CacheBasedPresetsHandler<T, Cache>::GetDefaultPreset(Preset<T>& preset) const {
  const auto list = GetPresetList();
  return !list.empty() && Find(list.front().first, preset);
}

template <typename T, typename Cache>
PresetNameStatus CacheBasedPresetsHandler<T, Cache>::CheckPresetName(const std::string& name,
                                                                     const Guid& guid) const {
  const std::u16string shown = ZString(name);
  Preset<T> own;
  if (Find(guid, own) && own.Name == name) return PresetNameStatus::kUsable;
  bool isTaken = false;
  const boost::function<bool(const Preset<T>&)> isFree = [&](const Preset<T>& preset) {
    isTaken = preset.Guid != guid && AreShownAlike(preset.Name, name, shown) &&
              (!filter_ || filter_(preset));
    return !isTaken;
  };
  if (cache_) cache_->ForEachPreset(isFree);
  if (isTaken) return PresetNameStatus::kTaken;
  if (PresetsCache::IsReservedPresetName(name)) return PresetNameStatus::kReserved;
  return CanNameAPreset(name) ? PresetNameStatus::kUsable : PresetNameStatus::kNotAFileName;
}

template <typename T, typename Cache>
boost::signals2::connection CacheBasedPresetsHandler<T, Cache>::RegisterForDataChanges(
    const typename DataSignal::slot_type& slot) {
  return dataChanged_.connect(slot);
}

template <typename T, typename Cache>
boost::signals2::connection CacheBasedPresetsHandler<T, Cache>::RegisterForStateChanges(
    const typename StateSignal::slot_type& slot) {
  return stateChanged_.connect(slot);
}

template <typename T, typename Cache>
void CacheBasedPresetsHandler<T, Cache>::SetState(const Preset<T>& selected, const T& data) {
  const boost::intrusive_ptr<CacheBasedPresetsHandler> self(this);  // a slot may let go of it
  T previous = data;  // a copy first: it may be what is replaced here
  std::swap(previous, working_);
  selected_ = Preset<T>(selected);
  FirstException failure;
  failure.Catch([&] { dataChanged_(previous); });
  failure.Catch([this] { stateChanged_(); });
  failure.Rethrow();
}

template class CacheBasedPresetsHandler<UserPresetData, PresetsCache>;
template class CacheBasedPresetsHandler<ConfigPresetData, PresetsCache>;

}  // namespace orvel
