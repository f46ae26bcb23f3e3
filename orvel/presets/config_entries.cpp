#include "orvel/presets/config_entries.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

#include "orvel/core/file_utils.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"

namespace orvel {

namespace {

auto PlaceOf(const File& file) {
  const Dir folder = file.Parent();
  return std::make_tuple(folder.Parent().GetName(), folder.GetName());
}

void LoadModeFolder(const Dir& folder, const ConfigEntries& others, bool isFactory,
                    ConfigEntries& entries) {
  const File file(folder, kConfigFileName);
  Preset<ConfigPresetData> preset;
  if (IsLink(file) || !file.Exists() || !ReadPresetFile(file, preset)) return;
  bool changed = false;
  if (FindConfigEntry(entries, preset.Guid) != nullptr ||
      FindConfigEntry(others, preset.Guid) != nullptr) {
    preset.Guid = Guid::CreateUnique();
    changed = true;
  }
  const std::string modeID = UTF16to8(folder.GetName());
  if (preset.PresetData.ModeID != modeID) {
    preset.PresetData.ModeID = modeID;
    changed = true;
  }
  // The folder of a name that no folder can bear, or not beside another, is called differently.
  const std::u16string folderName = folder.Parent().GetName();
  const std::string name = UTF16to8(folderName);
  if (!isFactory && preset.Name != name &&
      !FileUtils::IsNormalizedFrom(folderName, UTF8to16(preset.Name))) {
    preset.Name = name;
    changed = true;
  }
  if (changed && !WritePresetFile(file, preset)) return;
  entries.push_back({preset, file, isFactory, new UserPresetsGroup(preset.Guid, modeID, folder)});
}

}  // namespace

// The factory's first: of two with one guid, they keep theirs.
ConfigEntries LoadConfigEntries(const Dir& root) {
  ConfigEntries factory;
  ConfigEntries entries;
  const Dir factoryFolder(root, kFactoryFolderName);
  if (!IsLink(factoryFolder)) {
    ForEachSubfolder(factoryFolder,
                     [&factory](const Dir& folder) { LoadModeFolder(folder, {}, true, factory); });
  }
  ForEachSubfolder(root, [&](const Dir& nameFolder) {
    if (nameFolder.GetName() == kFactoryFolderName) return;
    ForEachSubfolder(nameFolder,
                     [&](const Dir& folder) { LoadModeFolder(folder, factory, false, entries); });
  });
  entries.insert(entries.end(), factory.begin(), factory.end());
  return entries;
}

const ConfigEntry* FindConfigEntry(const ConfigEntries& entries, const Guid& guid) {
  const auto found =
      std::ranges::find(entries, guid, [](const ConfigEntry& entry) { return entry.preset.Guid; });
  return found == entries.end() ? nullptr : &*found;
}

ConfigEntry* FindConfigEntry(ConfigEntries& entries, const Guid& guid) {
  return const_cast<ConfigEntry*>(FindConfigEntry(std::as_const(entries), guid));
}

void InsertConfigEntry(ConfigEntries& entries, const Preset<ConfigPresetData>& preset,
                       const File& file) {
  const auto place = std::ranges::find_if(entries, [&file](const ConfigEntry& entry) {
    return entry.isFactory || PlaceOf(file) < PlaceOf(entry.file);
  });
  entries.insert(place,
                 {preset, file, false,
                  new UserPresetsGroup(preset.Guid, preset.PresetData.ModeID, file.Parent())});
}

}  // namespace orvel
