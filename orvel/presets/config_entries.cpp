#include "orvel/presets/config_entries.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <tuple>
#include <utility>

#include "orvel/core/file_utils.h"
#include "orvel/core/native_path.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"

namespace orvel {
namespace fs = std::filesystem;
using teskcore::filesupport::ToNative;

namespace {

auto PlaceOf(const File& file) {
  const Dir folder = file.Parent();
  return std::make_tuple(folder.Parent().GetName(), folder.GetName());
}

void LoadModeFolder(const Dir& folder, const ConfigEntries& others, bool isFactory,
                    ConfigEntries& entries) {
  const File file(folder, kConfigFileName);
  Preset<ConfigPresetData> preset;
  if (!file.Exists() || !ReadPresetFile(file, preset)) return;
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
  if (changed && !RepairPresetFile(file, preset)) return;
  entries.push_back({preset, file, isFactory, new UserPresetsGroup(preset.Guid, modeID, folder)});
}

}  // namespace

// The factory's first: of two with one guid, they keep theirs. A folder that links lead to twice is
// loaded once; one of the root's own at its own place, whose name is what counts.
ConfigEntries LoadConfigEntries(const Dir& root) {
  ConfigEntries factory;
  ConfigEntries entries;
  std::set<fs::path> visited;
  std::error_code rootError;
  const fs::path rootPath = fs::canonical(ToNative(root.FullPath()), rootError);
  const auto load = [&](const Dir& nameFolder) {
    const bool isFactory = nameFolder.GetName() == kFactoryFolderName;
    ForEachSubfolder(nameFolder, [&](const Dir& folder) {
      std::error_code error;
      const fs::path place = fs::canonical(ToNative(folder.FullPath()), error);
      const fs::path own = rootPath / ToNative(nameFolder.GetName()) / ToNative(folder.GetName());
      const bool isOfRoot = place.native().starts_with(rootPath.native() + "/");
      if (error || (isOfRoot && place != own) || !visited.insert(place).second) return;
      LoadModeFolder(folder, factory, isFactory, isFactory ? factory : entries);
    });
  };
  load(Dir(root, kFactoryFolderName));
  ForEachSubfolder(root, [&load](const Dir& nameFolder) {
    if (nameFolder.GetName() != kFactoryFolderName) load(nameFolder);
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
