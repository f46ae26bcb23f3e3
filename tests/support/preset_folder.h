#pragma once

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "orvel/presets/preset_json.h"
#include "orvel/presets/presets_cache.h"

// Presets for tests, and what a folder and a store hold. Without GoogleTest, for the fuzz targets.
namespace orvel::test {

using UserPresets = std::vector<UserPreset>;
using ConfigPresets = std::vector<ConfigPreset>;

inline const Guid kDialogTemplate("58dc27a8-6a2a-480c-bd0c-4b45fff346a6");
inline const Guid kMusicTemplate("31ba96a6-5d3e-4d89-b1e1-1dbe3c055d0c");
inline const Guid kSfxTemplate("cea63332-1adc-44a9-a6eb-5490f965859b");

inline UserPreset MakeUserPreset(const std::string& name, const Guid& config = kDialogTemplate,
                                 float value = 1.0f, const Guid& guid = Guid::CreateUnique()) {
  const UserPresetData data{config, "dialog", {{"model_volume", {1.0f, value, 0.0f}}}};
  return {guid, name, UserPresetData::kType, 1, data};
}

inline ConfigPreset MakeConfigPreset(const std::string& name, const std::string& modeID = "dialog",
                                     float value = 6.0f, const Guid& guid = Guid::CreateUnique()) {
  ConfigPresetData data{modeID, {}};
  data.Models["model_volume"].SetValue("MaxGain", value);
  return {guid, name, ConfigPresetData::kType, 1, data};
}

inline std::string ReadText(const std::filesystem::path& path) {
  std::stringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

inline void WriteText(const std::filesystem::path& path, const std::string& text) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

/// All that is below `folder`: files with their content, links with where they lead.
inline std::map<std::string, std::string> Snapshot(const std::filesystem::path& folder) {
  std::map<std::string, std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    std::string& text = found[entry.path().lexically_relative(folder).string()];
    if (entry.is_symlink()) {
      text = "-> " + std::filesystem::read_symlink(entry.path()).string();
    } else {
      text = entry.is_regular_file() ? ReadText(entry.path()) : "folder";
    }
  }
  return found;
}

inline UserPresets UsersOf(const PresetsCache& cache, const Guid& config) {
  UserPresets presets;
  cache.GetUserPresetsForConfig(config, presets);
  return presets;
}

inline ConfigPresets ConfigsOf(const PresetsCache& cache) {
  ConfigPresets presets;
  cache.GetPresets(presets);
  return presets;
}

/// What a cache knows, a text for each preset: disk and memory agree when a fresh one, or this one
/// after a reload, knows the same.
inline std::vector<std::string> Describe(const PresetsCache& cache) {
  std::vector<std::string> texts;
  for (const auto& config : ConfigsOf(cache)) {
    WritePreset(config, texts.emplace_back());
    for (const auto& user : UsersOf(cache, config.Guid)) WritePreset(user, texts.emplace_back());
  }
  return texts;
}

/// Makes one change of one preset, which the store may refuse. `roll(n)` gives one of 0..n-1, and
/// `name()` a name; what they give makes the same change of the same store.
template <typename Roll, typename Name>
void ChangeAny(PresetsCache& cache, const Roll& roll, const Name& name) {
  const auto any = [&roll](const auto& from) { return from[roll(from.size())]; };
  char guid[37];
  std::snprintf(guid, sizeof guid, "%08x-0000-4000-8000-000000000000",
                static_cast<unsigned>(roll(1u << 31)));
  auto config = MakeConfigPreset(name(), "dialog", static_cast<float>(roll(1000)), Guid(guid));
  const auto configs = ConfigsOf(cache);
  const std::size_t kind = configs.empty() ? 0 : roll(12);
  if (kind == 0) {
    cache.CreateConfigPreset(config);
    return;
  }
  config.Guid = any(configs).Guid;
  auto user = MakeUserPreset(config.Name, config.Guid, static_cast<float>(roll(1000)), Guid(guid));
  const auto users = UsersOf(cache, config.Guid);
  if (!users.empty() && roll(2) == 0) user.Guid = any(users).Guid;
  if (kind == 1) {
    cache.RemoveConfigPreset(config.Guid);
  } else if (kind == 2) {
    cache.SavePreset(config);
  } else if (kind < 5) {
    cache.RemovePreset(user.Guid);
  } else {
    cache.SavePreset(user);
  }
}

}  // namespace orvel::test
