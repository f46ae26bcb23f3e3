#include "orvel/presets/factory_presets.h"

#include <exception>
#include <string>

#include "orvel/core/file_utils.h"
#include "orvel/core/temp_name.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"
#include "orvel/presets/preset_json.h"
#include "orvel/presets/preset_trace.h"

namespace orvel {
using teskcore::filesupport::MakeTempName;

namespace {

template <typename T>
std::vector<Preset<T>> ReadFactoryDocument(ModuleHandle module, const std::u16string& name) {
  std::vector<Preset<T>> presets;
  std::vector<unsigned char> text;
  if (GetBinaryFromModule(module, name, u"json", text)) {
    try {
      ReadPresets(std::string(text.begin(), text.end()), presets);
    } catch (const std::exception& error) {
      TracePresetDetail("Skipping the factory's " + UTF16to8(name) + ": " + error.what());
    }
  }
  return presets;
}

}  // namespace

std::vector<Preset<ConfigPresetData>> ReadFactoryConfigs(ModuleHandle module) {
  return ReadFactoryDocument<ConfigPresetData>(module, u"OrvelConfigPresets");
}

std::vector<Preset<UserPresetData>> ReadFactoryUserPresets(ModuleHandle module) {
  return ReadFactoryDocument<UserPresetData>(module, u"OrvelPresets");
}

void SeedFactoryFolder(ModuleHandle module, const Dir& target) {
  if (target.Exists()) return;
  const Dir seed(target.Parent().Parent(), MakeTempName());
  const auto fill = [module, &seed] {
    const auto userPresets = ReadFactoryUserPresets(module);
    for (const auto& config : ReadFactoryConfigs(module)) {
      if (!IsFolderName(config.PresetData.ModeID)) continue;
      const Dir folder(seed, UTF8to16(config.PresetData.ModeID));
      if (!CreateFolder(folder)) return false;
      if (!WritePresetFile(File(folder, kConfigFileName), config)) return false;
      for (const auto& preset : userPresets) {
        if (preset.PresetData.Config != config.Guid) continue;
        if (!CanNameAPreset(preset.Name)) return false;
        const auto title = FileUtils::NormalizePathForSaving(UTF8to16(preset.Name));
        if (!WritePresetFile(File(folder, title + kPresetFileExtension), preset)) return false;
      }
    }
    return true;
  };
  // Another process may have been faster.
  if (CreateFolder(target.Parent()) && CreateFolder(seed) && fill() && !target.Exists()) {
    MovePresetPath(seed.FullPath(), target.FullPath());
  }
  DeleteTree(seed);
}

}  // namespace orvel
