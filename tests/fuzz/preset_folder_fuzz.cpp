// A preset folder made of any bytes: folders, presets, mutated presets and links, as the input
// says. A reload deletes nothing, changes no file that it cannot read, and a second one changes no
// byte. Whatever is saved, removed or migrated then, memory and disk agree.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "orvel/orvel.h"

namespace {

namespace fs = std::filesystem;
using Cache = boost::intrusive_ptr<orvel::PresetsCache>;
using Files = std::map<std::string, std::string>;

void Require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "Broken: %s\n", law);
  std::abort();
}

// Goes when the program ends; a crash leaves it to be looked at.
struct Folder {
  Folder() : path(fs::temp_directory_path()) {
    if (fs::is_directory("/dev/shm")) path = "/dev/shm";
    path /= "orvel-fuzz-" + orvel::Guid::CreateUnique().AsUTF8String();
    fs::create_directories(path);
    orvel::Dir::SetPrefDir(orvel::Dir(path.u16string()));
  }
  ~Folder() { fs::remove_all(path); }
  fs::path Root() const { return path / "Presets/Orvel"; }
  fs::path path;
};

const char* const kNames[] = {"Default", "default", "Mine", "a%2fb%~4", "A%", "\xFF\xFE", "x copy"};
const char* const kModes[] = {"dialog", "music", "\xC3(", "mode"};
const char* const kFiles[] = {"(Config).orvel", "Voice.orvel", "Voice copy.orvel", "\xFF.orvel",
                              ".orvel",         "..orvel",     "notes.txt",        ".temporary",
                              ".renamed",       "%7e%~1.orvel"};
const char* const kGuids[] = {"58dc27a8-6a2a-480c-bd0c-4b45fff346a6",
                              "11111111-1111-4111-8111-111111111111", ""};

template <typename T, std::size_t N>
T Pick(FuzzedDataProvider& data, const T (&from)[N]) {
  return from[data.ConsumeIntegralInRange<std::size_t>(0, N - 1)];
}

std::string MakeText(FuzzedDataProvider& data, bool isConfig) {
  const int kind = data.ConsumeIntegralInRange(0, 3);
  if (kind == 0) return data.ConsumeRandomLengthString(400);
  const std::string guid = Pick(data, kGuids);
  const std::string name = data.ConsumeRandomLengthString(12);
  const std::string mode = Pick(data, kModes);
  std::string text;
  if (isConfig) {
    orvel::ConfigPreset preset{orvel::Guid(guid), name, {}, 1, {mode, {}}};
    preset.PresetData.Models["model_volume"].SetValue("MaxGain", 6.0f);
    Require(orvel::WritePreset(preset, text), "a preset can be written");
  } else {
    const orvel::Guid config(Pick(data, kGuids));
    const float value = static_cast<float>(data.ConsumeIntegral<std::int16_t>());
    const orvel::UserPreset preset{
        orvel::Guid(guid), name, {}, 1, {config, mode, {{"model_volume", {value}}}}};
    Require(orvel::WritePreset(preset, text), "a preset can be written");
  }
  for (int edits = kind == 1 ? data.ConsumeIntegralInRange(1, 3) : 0; edits > 0; --edits) {
    const auto place = data.ConsumeIntegralInRange<std::size_t>(0, text.size());
    text.replace(place, data.ConsumeIntegralInRange<std::size_t>(0, 4),
                 data.ConsumeRandomLengthString(4));
  }
  return text;
}

void MakeFiles(FuzzedDataProvider& data, const fs::path& root, const fs::path& outside) {
  std::vector<fs::path> made = {outside / "dialog", outside / "dialog/Voice.orvel", root / "gone"};
  for (int count = data.ConsumeIntegralInRange(0, 12); count > 0; --count) {
    const fs::path base =
        data.ConsumeIntegralInRange(0, 9) == 0 ? outside : root / Pick(data, kNames);
    const fs::path mode = base / Pick(data, kModes);
    const std::string file = Pick(data, kFiles);
    const int depth = data.ConsumeIntegralInRange(0, 19);  // what becomes a link, if anything
    const fs::path link = depth == 0 ? base : depth == 1 ? mode : depth == 2 ? mode / file : "";
    std::error_code error;
    fs::create_directories(link.empty() ? mode : link.parent_path(), error);
    if (!link.empty()) {
      fs::create_symlink(made[data.ConsumeIntegralInRange<std::size_t>(0, made.size() - 1)], link,
                         error);
      continue;
    }
    std::ofstream(mode / file, std::ios::binary) << MakeText(data, file == kFiles[0]);
    for (const auto& path : {base, mode, mode / file}) made.push_back(path);
  }
}

// Files with their content, and links with where they lead.
Files Read(const fs::path& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    std::stringstream text;
    if (entry.is_symlink()) {
      text << "-> " << fs::read_symlink(entry).native();
    } else if (entry.is_regular_file()) {
      text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    } else {
      text << "folder";
    }
    files[entry.path().native()] = text.str();
  }
  return files;
}

bool IsPreset(const std::string& path, const std::string& text) {
  try {
    if (path.ends_with("(Config).orvel")) {
      orvel::ConfigPreset preset;
      orvel::ReadPreset(text, preset);
      return !preset.Guid.IsNull();
    }
    orvel::UserPreset preset;
    orvel::ReadPreset(text, preset);
    return !preset.Guid.IsNull();
  } catch (const std::exception&) {
    return false;
  }
}

std::string Describe(const orvel::PresetsCache& cache) {
  std::vector<orvel::ConfigPreset> configs;
  std::vector<orvel::UserPreset> users;
  cache.GetPresets(configs);
  cache.GetPresets(users);
  std::string all;
  std::string text;
  for (const auto& preset : configs) all += orvel::WritePreset(preset, text) ? text : "?";
  for (const auto& preset : users) all += orvel::WritePreset(preset, text) ? text : "?";
  return all;
}

void Change(FuzzedDataProvider& data, orvel::PresetsCache& cache) {
  std::vector<orvel::ConfigPreset> configs;
  std::vector<orvel::UserPreset> users;
  cache.GetPresets(configs);
  cache.GetPresets(users);
  const auto any = [&data](const auto& from) {
    return from[data.ConsumeIntegralInRange<std::size_t>(0, from.size() - 1)];
  };
  if (configs.empty()) return;
  auto config = any(configs);
  orvel::UserPreset user = users.empty() ? orvel::UserPreset() : any(users);
  const int operation = data.ConsumeIntegralInRange(0, 5);
  if (operation == 0) cache.RemoveConfigPreset(config.Guid);
  if (operation == 1) cache.RemovePreset(user.Guid);
  if (operation == 2) cache.MigrateUserPresets(config.Guid, any(configs).Guid, data.ConsumeBool());
  if (operation == 3) {
    config.Name = data.ConsumeRandomLengthString(8);
    cache.SavePreset(config);
  }
  if (operation >= 4) {
    user.PresetData.Config = config.Guid;
    user.Name = data.ConsumeRandomLengthString(8);
    if (operation == 5) user.Guid = orvel::Guid::CreateUnique();
    cache.SavePreset(user);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const Folder folder;
  FuzzedDataProvider data(bytes, size);
  const fs::path outside = folder.path / "outside";
  fs::remove_all(folder.Root());
  fs::remove_all(outside);
  fs::create_directories(folder.Root() / "Default");  // or the factory's is made
  fs::create_directories(outside / "dialog");
  static const Cache cache(new orvel::PresetsCache(orvel::GetLibraryModule(), true));
  static const Cache view(new orvel::PresetsCache(orvel::GetLibraryModule(), true));
  MakeFiles(data, folder.Root(), outside);

  const Files before = Read(folder.path);
  cache->Reload();
  const Files after = Read(folder.path);
  for (const auto& [path, text] : before) {
    Require(after.contains(path), "a reload deletes nothing");
    const bool isLink = text.starts_with("-> ");  // one to a preset may become a file of its own
    Require(after.at(path) == text || isLink || IsPreset(path, text),
            "a reload changes no file that it cannot read");
  }
  Require(after.size() == before.size(), "a reload leaves nothing behind");
  const std::string known = Describe(*cache);
  cache->Reload();
  Require(Read(folder.path) == after, "a second reload changes no byte");
  Require(Describe(*cache) == known, "a second reload finds the same");
  for (int changes = 4; changes > 0 && data.remaining_bytes() > 0; --changes) {
    Change(data, *cache);
    view->Reload();
    Require(Describe(*view) == Describe(*cache), "memory and disk agree");
  }
  return 0;
}
