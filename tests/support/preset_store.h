#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/dir.h"
#include "orvel/core/library_module.h"
#include "orvel/core/trace.h"
#include "orvel/presets/preset_json.h"
#include "orvel/presets/presets_cache.h"
#include "tests/support/temp_dir.h"

namespace orvel::test {

using UserPresets = std::vector<Preset<UserPresetData>>;
using ConfigPresets = std::vector<Preset<ConfigPresetData>>;

inline const Guid kDialogTemplate("58dc27a8-6a2a-480c-bd0c-4b45fff346a6");
inline const Guid kMusicTemplate("31ba96a6-5d3e-4d89-b1e1-1dbe3c055d0c");
inline const Guid kSfxTemplate("cea63332-1adc-44a9-a6eb-5490f965859b");

inline Preset<UserPresetData> MakeUserPreset(const std::string& name,
                                             const Guid& config = kDialogTemplate,
                                             float value = 1.0f) {
  Preset<UserPresetData> preset;
  preset.Guid = Guid::CreateUnique();
  preset.Name = name;
  preset.Type = UserPresetData::kType;
  preset.PresetData = {config, "dialog", {{"model_volume", {1.0f, value, 0.0f}}}};
  return preset;
}

inline Preset<ConfigPresetData> MakeConfigPreset(const std::string& name,
                                                 const std::string& modeID = "dialog",
                                                 float value = 6.0f) {
  Preset<ConfigPresetData> preset;
  preset.Guid = Guid::CreateUnique();
  preset.Name = name;
  preset.Type = ConfigPresetData::kType;
  preset.PresetData.ModeID = modeID;
  preset.PresetData.Models["model_volume"].SetValue("MaxGain", value);
  return preset;
}

/// A preset folder of the test's own, with the traces of the presets.
class PresetStore : public ::testing::Test {
 protected:
  using Cache = boost::intrusive_ptr<PresetsCache>;

  PresetStore() : before_(Dir::PrefDir()) {
    Dir::SetPrefDir(folder_.AsDir());
    teskcore::debug::SetTraceLevel("app.Presets", 3);
    teskcore::debug::SetTraceSink(
        [this](const std::string&, int, const std::string& text) { traces_.push_back(text); });
  }
  ~PresetStore() override {
    teskcore::debug::SetTraceSink({});
    teskcore::debug::SetTraceLevel("app.Presets", 0);
    Dir::SetPrefDir(before_);
  }

  static Cache Open() { return new PresetsCache(GetLibraryModule(), true); }

  std::filesystem::path Root() const { return folder_.Path() / "Presets" / "Orvel"; }

  /// Every file below the root with its content; a link with where it leads.
  std::map<std::string, std::string> Snapshot() const {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(Root())) {
      const std::string name = entry.path().lexically_relative(Root()).string();
      if (entry.is_symlink()) {
        files[name] = "-> " + fs::read_symlink(entry.path()).string();
      } else if (entry.is_regular_file()) {
        files[name] = Read(entry.path());
      }
    }
    return files;
  }

  static std::string Read(const std::filesystem::path& path) {
    std::stringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }
  static void Write(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
  }

  static UserPresets UsersOf(const PresetsCache& cache, const Guid& config) {
    UserPresets presets;
    cache.GetUserPresetsForConfig(config, presets);
    return presets;
  }
  static ConfigPresets ConfigsOf(const PresetsCache& cache) {
    ConfigPresets presets;
    cache.GetPresets(presets);
    return presets;
  }

  /// What a cache knows, a line for each preset: disk and memory agree when a fresh one, or this
  /// one after a reload, knows the same.
  static std::vector<std::string> Describe(const PresetsCache& cache) {
    std::vector<std::string> lines;
    const auto add = [&lines](const auto& preset) {
      std::string text;
      WritePreset(preset, text);
      lines.push_back(preset.Guid.AsUTF8String() + " " + preset.Name + " " +
                      std::to_string(std::hash<std::string>()(text)));
    };
    for (const auto& config : ConfigsOf(cache)) {
      add(config);
      for (const auto& preset : UsersOf(cache, config.Guid)) add(preset);
    }
    return lines;
  }

  bool WasTraced(const std::string& text) const {
    for (const auto& trace : traces_) {
      if (trace.find(text) != std::string::npos) return true;
    }
    return false;
  }

  TempDir folder_;
  std::vector<std::string> traces_;

 private:
  Dir before_;
};

}  // namespace orvel::test
