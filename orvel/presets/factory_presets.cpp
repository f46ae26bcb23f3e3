#include "orvel/presets/factory_presets.h"

#include <exception>
#include <filesystem>
#include <string>
#include <system_error>

#include "orvel/core/native_path.h"
#include "orvel/core/temp_name.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"
#include "orvel/presets/preset_json.h"

namespace orvel {
namespace fs = std::filesystem;
using teskcore::filesupport::MakeTempName;
using teskcore::filesupport::ToNative;

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
        std::u16string title;
        if (preset.PresetData.Config != config.Guid) continue;
        if (!MakePresetFileTitle(preset.Name, title)) return false;
        if (!WritePresetFile(File(folder, title + kPresetFileExtension), preset)) return false;
      }
    }
    return true;
  };
  std::error_code error;
  if (CreateFolder(target.Parent()) && CreateFolder(seed) && fill()) {
    fs::rename(ToNative(seed.FullPath()), ToNative(target.FullPath()), error);
    // Another process may have been faster.
    if (error && !target.Exists()) TracePresetDetail("No factory presets: " + error.message());
  }
  fs::remove_all(ToNative(seed.FullPath()), error);
}

}  // namespace orvel
