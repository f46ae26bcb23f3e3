#include "orvel/presets/presets_cache.h"

#include <algorithm>
#include <utility>

#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/taken_names.h"
#include "orvel/core/text.h"
#include "orvel/core/usage_logger.h"
#include "orvel/presets/config_entries.h"
#include "orvel/presets/crash_remains.h"
#include "orvel/presets/factory_presets.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"
#include "orvel/presets/preset_trace.h"
#include "orvel/presets/presets_base_dir.h"
#include "orvel/presets/temporary_mark.h"

namespace orvel {

namespace {

constexpr char16_t kRootName[] = u"Orvel";
constexpr char kReservedName[] = "Default";

Dir RootFolder() { return {GetPresetsBaseDir(), kRootName}; }

// False, traced, when a link has taken the place of its folder since that was read: behind it stand
// files that belong somewhere else.
bool IsInPlace(const ConfigEntry& entry) {
  const Dir folder = entry.file.Parent();
  if (!IsBehindLink(folder)) return true;
  TracePresetDetail("Leaving a preset folder behind a link: " + ShownPath(folder.FullPath()));
  return false;
}

}  // namespace

PresetsCache::PresetsCache(ModuleHandle module, bool usesFolder)
    : module_(module), usesFolder_(usesFolder), root_(RootFolder()) {
  if (!usesFolder_) return;
  SeedFactoryFolder(module_, Dir(root_, kFactoryFolderName));
  ClearRemainsOfCrashes(root_);
  Reload();
}

void PresetsCache::Reload() {
  entries_.clear();
  if (usesFolder_ && root_.Exists()) entries_ = LoadConfigEntries(root_);
  std::erase_if(temporaries_, [this](const Guid& guid) {
    const ConfigEntry* entry = Find(guid);
    return entry == nullptr || !IsMarkedTemporary(entry->file.Parent(), guid);
  });
}

void PresetsCache::Close() {
  usesFolder_ = false;
  entries_.clear();
  temporaries_.clear();
}

bool PresetsCache::FindPreset(const Guid& guid, Preset<ConfigPresetData>& preset) const {
  const ConfigEntry* entry = Find(guid);
  if (entry != nullptr) preset = entry->preset;
  return entry != nullptr;
}

bool PresetsCache::FindPreset(const Guid& guid, Preset<UserPresetData>& preset) const {
  for (const auto& entry : entries_) {
    const auto* found = entry.group->GetPresets().Find(guid);
    if (found == nullptr) continue;
    preset = *found;
    return true;
  }
  return false;
}

void PresetsCache::ForEachPreset(
    const boost::function<bool(const Preset<ConfigPresetData>&)>& visit) const {
  for (const auto& entry : entries_) {
    if (!visit(entry.preset)) return;
  }
}

void PresetsCache::ForEachPreset(
    const boost::function<bool(const Preset<UserPresetData>&)>& visit) const {
  for (const auto& entry : entries_) {
    if (!entry.group->GetPresets().ForEach(visit)) return;
  }
}

void PresetsCache::GetPresets(std::vector<Preset<ConfigPresetData>>& presets) const {
  presets.clear();
  for (const auto& entry : entries_) presets.push_back(entry.preset);
}

void PresetsCache::GetPresets(std::vector<Preset<UserPresetData>>& presets) const {
  presets.clear();
  for (const auto& entry : entries_) entry.group->GetPresets().AppendTo(presets);
}

bool PresetsCache::SavePreset(const Preset<UserPresetData>& preset) {
  ConfigEntry* entry = Find(preset.PresetData.Config);
  return entry != nullptr && IsInPlace(*entry) && entry->group->presets_.Save(preset);
}

bool PresetsCache::SavePreset(const Preset<ConfigPresetData>& preset) {
  ConfigEntry* entry = Find(preset.Guid);
  if (entry == nullptr) return CreateConfigPreset(preset);
  if (preset.PresetData.ModeID != entry->preset.PresetData.ModeID || !IsInPlace(*entry)) {
    return false;
  }
  if (preset.Name != entry->preset.Name) {
    return !entry->isFactory && Rename(*entry, preset);
  }
  if (!WritePresetFile(entry->file, preset)) return false;
  entry->preset = preset;
  configPresetChanged_(Guid(preset.Guid), Guid(preset.Guid));
  return true;
}

// The new record waits beside the old one while the folder takes the new name, which is the step
// that counts: what a crash cuts short before it is undone at the next start, and completed after
// it.
bool PresetsCache::Rename(ConfigEntry& entry, const Preset<ConfigPresetData>& preset) {
  std::u16string title;
  if (IsReservedPresetName(preset.Name) || !MakeFolderTitle(preset.Name, title)) return false;
  if (IsNameTaken(preset.Name, preset.PresetData.ModeID)) return false;
  const Dir from = entry.file.Parent();
  const Dir to(Dir(root_, title), from.GetName());
  const File file(to, kConfigFileName);
  if (file.Exists() || !WritePresetFile(File(from, kRenamedName), preset)) return false;
  bool isRenamed = false;
  if (!IsLink(to.Parent()) && CreateFolder(to.Parent()) &&
      MovePresetPath(from.FullPath(), to.FullPath())) {
    isRenamed = MovePresetPath(File(to, kRenamedName).FullPath(), file.FullPath());
    if (!isRenamed) MovePresetPath(to.FullPath(), from.FullPath());
  }
  if (!isRenamed) {
    DeletePresetFile(File(from, kRenamedName));
    DeleteIfEmpty(to.Parent());
    return false;
  }
  DeleteIfEmpty(from.Parent());
  const Guid guid = preset.Guid;
  std::erase_if(entries_, [&guid](const auto& other) { return other.preset.Guid == guid; });
  InsertConfigEntry(entries_, preset, file);
  MakeOrdinary(guid);
  configPresetChanged_(guid, guid);
  return true;
}

// The name folder for a preset of this name; false when it can have none.
bool PresetsCache::MakeFolderTitle(const std::string& name, std::u16string& title) const {
  if (!CanNameAPreset(name)) return false;
  FileUtils::TakenNames others;
  ForEachSubfolder(root_, [&others](const Dir& folder) { others.Insert(folder.GetName()); });
  title = others.Choose(UTF8to16(name));
  return true;
}

// A name is that of a folder, which a person may have renamed so that it is not what the name
// makes.
bool PresetsCache::IsNameTaken(const std::string& name, const std::string& modeID) const {
  return std::ranges::any_of(entries_, [&](const ConfigEntry& entry) {
    return !entry.isFactory && entry.preset.Name == name &&
           entry.preset.PresetData.ModeID == modeID;
  });
}

// Unless it is gone, or ordinary already.
void PresetsCache::MakeOrdinary(const Guid& guid) {
  if (temporaries_.erase(guid) == 0) return;
  DeleteTemporaryMark(Find(guid)->file.Parent());
}

bool PresetsCache::CreateConfigPreset(const Preset<ConfigPresetData>& preset) {
  std::u16string title;
  if (IsReservedPresetName(preset.Name) || !MakeFolderTitle(preset.Name, title)) return false;
  return Create(preset, title, false);
}

bool PresetsCache::Create(const Preset<ConfigPresetData>& preset, const std::u16string& title,
                          bool isTemporary) {
  const std::string& modeID = preset.PresetData.ModeID;
  if (!usesFolder_ || preset.Guid.IsNull() || Find(preset.Guid) != nullptr ||
      !IsFolderName(modeID) || IsNameTaken(preset.Name, modeID)) {
    return false;
  }
  const auto* manager = ConfigurationManager::Get();
  const Guid current = manager != nullptr ? manager->GetCurrentConfigGuidForMode(modeID) : Guid();
  const Dir folder(Dir(root_, title), UTF8to16(modeID));
  const File file(folder, kConfigFileName);
  if (file.Exists() || !CreateModeFolder(folder)) return false;
  // The mark comes first, so that no crash makes a document's template look like a person's own.
  const bool isMarked =
      isTemporary ? WriteTemporaryMark(folder, preset.Guid) : DeleteTemporaryMark(folder);
  if (!isMarked || !WritePresetFile(file, preset)) {
    DeleteTemporaryMark(folder);
    DeleteModeFolder(folder);
    return false;
  }
  InsertConfigEntry(entries_, preset, file);
  if (isTemporary) temporaries_.insert(preset.Guid);
  if (current != preset.Guid && temporaries_.contains(current)) {
    // Another process may have saved there. It stays with what could not be read, copied, deleted.
    const bool isGone = Find(current)->group->presets_.Load() &&
                        MigrateUserPresets(current, preset.Guid, true) &&
                        Remove(current, preset.Guid);
    if (!isGone) MakeOrdinary(current);
  }
  UsageLogger::Get().Log({"orvel_save_master_preset",
                          "Orvel",
                          "Orvel Preset",
                          {{"preset_guid", preset.Guid.AsUTF8String()}}});
  return true;
}

bool PresetsCache::RemoveConfigPreset(const Guid& guid) { return Remove(guid, Guid()); }

bool PresetsCache::Remove(Guid guid, Guid successor) {
  const auto entry =
      std::ranges::find(entries_, guid, [](const ConfigEntry& e) { return e.preset.Guid; });
  if (entry == entries_.end() || !IsInPlace(*entry)) return false;
  const File file = entry->file;
  const Dir folder = file.Parent();
  // The configuration's file goes last: what is cut short leaves a template with fewer presets, not
  // presets that nobody lists.
  const auto group = entry->group;
  std::vector<Preset<UserPresetData>> presets;
  group->GetPresets().AppendTo(presets);
  for (const auto& preset : presets) {
    if (!group->presets_.Remove(preset.Guid)) return false;
  }
  if (!DeletePresetFile(file)) return false;
  const bool isClean = DeleteTemporaryMark(folder);
  entries_.erase(entry);
  temporaries_.erase(guid);
  DeleteModeFolder(folder);
  configPresetChanged_(guid, successor);
  return isClean;
}

bool PresetsCache::RemovePreset(const Guid& guid) {
  for (const auto& entry : entries_) {
    if (entry.group->GetPresets().Find(guid) == nullptr) continue;
    return RemovePreset(guid, entry.preset.Guid);
  }
  return false;
}

bool PresetsCache::RemovePreset(const Guid& guid, const Guid& config) {
  ConfigEntry* entry = Find(config);
  return entry != nullptr && IsInPlace(*entry) && entry->group->presets_.Remove(guid);
}

bool PresetsCache::AddTemporaryPreset(const Preset<ConfigPresetData>& preset) {
  if (temporaries_.contains(preset.Guid)) return true;
  if (!IsFolderName(preset.PresetData.ModeID)) return false;
  Preset<ConfigPresetData> temporary = preset;
  for (int number = 2;; ++number) {
    std::u16string title;
    if (!MakeFolderTitle(temporary.Name, title)) return false;
    const Dir folder(Dir(root_, title), UTF8to16(preset.PresetData.ModeID));
    const bool isTaken = IsReservedPresetName(temporary.Name) ||
                         IsNameTaken(temporary.Name, preset.PresetData.ModeID);
    const bool isFree = !folder.Exists() && !IsBehindLink(folder);
    if (!isTaken && isFree) {
      return Create(temporary, title, true);
    }
    temporary.Name = preset.Name + " " + std::to_string(number);
  }
}

bool PresetsCache::RemoveTemporaryPreset(const Guid& guid) {
  if (!temporaries_.contains(guid)) return true;
  const bool isGone = RescueUserPresets(guid) && Remove(guid, Guid());
  if (!isGone) MakeOrdinary(guid);
  return isGone;
}

// Moves what somebody saved under a configuration preset that goes, and be it in another process,
// to where it stays. False when not all of it could be moved.
bool PresetsCache::RescueUserPresets(const Guid& guid) {
  const auto source = Find(guid)->group;
  if (!source->presets_.Load()) return false;
  std::vector<Preset<UserPresetData>> presets;
  source->GetPresets().AppendTo(presets);
  if (presets.empty()) return true;
  Preset<ConfigPresetData> factory;
  if (!GetFactoryConfigPreset(Find(guid)->preset.PresetData.ModeID, factory)) return false;
  const auto& taken = Find(factory.Guid)->group->GetPresets();
  for (auto& preset : presets) {
    const std::string name = preset.Name;
    preset.PresetData.Config = factory.Guid;
    if (const auto* twin = taken.Find(preset.Guid)) {
      if (twin->Name == name && twin->PresetData == preset.PresetData) continue;
      preset.Guid = Guid::CreateUnique();
    }
    for (int number = 2; taken.HasName(preset.Name); ++number) {
      preset.Name = name + " " + std::to_string(number);
    }
    if (!SavePreset(preset)) return false;
  }
  return true;
}

void PresetsCache::RemoveTemporaryPresets() {
  const std::set<Guid> guids = temporaries_;  // a listener may bring others
  FirstException failure;
  for (const auto& guid : guids) failure.Catch([&] { RemoveTemporaryPreset(guid); });
  failure.Rethrow();
}

void PresetsCache::GetUserPresetsForConfig(const Guid& config,
                                           std::vector<Preset<UserPresetData>>& presets) const {
  presets.clear();
  const ConfigEntry* entry = Find(config);
  if (entry != nullptr) entry->group->GetPresets().AppendTo(presets);
}

boost::intrusive_ptr<UserPresetsGroup> PresetsCache::GetUserPresetsGroupForGuid(
    const Guid& config) const {
  const ConfigEntry* entry = Find(config);
  return entry == nullptr ? nullptr : entry->group;
}

bool PresetsCache::IsReservedPresetName(const std::string& name) { return name == kReservedName; }

bool PresetsCache::IsFactoryPresetName(const std::string& name) const {
  if (!factoryNames_) {
    auto& names = factoryNames_.emplace();
    for (const auto& preset : ReadFactoryConfigs(module_)) names.insert(preset.Name);
    for (const auto& preset : ReadFactoryUserPresets(module_)) names.insert(preset.Name);
  }
  return factoryNames_->contains(name);
}

bool PresetsCache::GetFactoryConfigPreset(const std::string& modeID,
                                          Preset<ConfigPresetData>& preset) const {
  const auto found = std::ranges::find_if(entries_, [&modeID](const ConfigEntry& entry) {
    return entry.isFactory && entry.preset.PresetData.ModeID == modeID;
  });
  if (found == entries_.end()) return false;
  preset = found->preset;
  return true;
}

bool PresetsCache::MigrateUserPresets(const Guid& from, const Guid& to, bool copy) {
  if (Find(from) == nullptr || Find(to) == nullptr) return false;
  if (from == to) return true;
  std::vector<Preset<UserPresetData>> presets;
  GetUserPresetsForConfig(from, presets);
  const MigrateUserPresetFunction migrate = migrate_;  // it may replace itself
  struct SourceScope {
    Guid& source;
    Guid before;
    ~SourceScope() { source = before; }
  } const scope{migrationSource_, std::exchange(migrationSource_, from)};
  std::set<std::string> names;
  bool allSaved = true;
  for (auto& preset : presets) {
    preset.PresetData.Config = to;
    if (copy) preset.Guid = Guid::CreateUnique();
    if (migrate && !migrate(preset) && !copy) continue;
    // Two that share a name, as copies made by hand may, do not replace each other.
    const std::string name = preset.Name;
    for (int number = 2; !names.insert(preset.Name).second; ++number) {
      preset.Name = name + " " + std::to_string(number);
    }
    allSaved &= SavePreset(preset);
  }
  return allSaved;
}

void PresetsCache::SetMigrateUserPresetFunction(const MigrateUserPresetFunction& function) {
  migrate_ = function;
}

boost::signals2::connection PresetsCache::RegisterForConfigPresetChanges(
    const ConfigPresetSignal::slot_type& slot) {
  return configPresetChanged_.connect(slot);
}

const ConfigEntry* PresetsCache::Find(const Guid& guid) const {
  return FindConfigEntry(entries_, guid);
}

ConfigEntry* PresetsCache::Find(const Guid& guid) { return FindConfigEntry(entries_, guid); }

}  // namespace orvel
