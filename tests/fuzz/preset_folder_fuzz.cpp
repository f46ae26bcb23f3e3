// A preset folder made of any bytes: folders, presets, mutated presets and links, as the input
// says. A reload deletes nothing, changes no file that it cannot read, and a second one changes no
// byte. Whatever is saved, removed or migrated then, memory and disk agree.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "orvel/core/library_module.h"
#include "tests/support/preset_folder.h"
#include "tests/support/temp_dir.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;

void Require(bool holds, const char* law) {
  if (holds) return;
  std::fprintf(stderr, "Broken: %s\n", law);
  std::abort();
}

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
  const std::string guid = Pick(data, kGuids);
  const std::string name = data.ConsumeRandomLengthString(12);
  const std::string mode = Pick(data, kModes);
  std::string text;
  const bool isWritten =
      isConfig
          ? WritePreset(MakeConfigPreset(name, mode, 6.0f, Guid(guid)), text)
          : WritePreset(MakeUserPreset(name, Guid(Pick(data, kGuids)), 1.0f, Guid(guid)), text);
  Require(isWritten, "a preset can be written");
  for (int edits = data.ConsumeIntegralInRange(-3, 3); edits > 0; --edits) {
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
    const int depth = data.ConsumeIntegralInRange(0, 11);  // what becomes a link, if anything
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

template <typename Preset>
bool IsPreset(const std::string& text) {
  try {
    Preset preset;
    ReadPreset(text, preset);
    return !preset.Guid.IsNull();
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  static const TempDir folder;
  Dir::SetPrefDir(folder.AsDir());
  const fs::path root = folder.Path() / "Presets/Orvel";
  const fs::path outside = folder.Path() / "outside";
  fs::remove_all(root);
  fs::remove_all(outside);
  fs::create_directories(root / "Default");  // or the factory's is made
  fs::create_directories(outside / "dialog");
  static const boost::intrusive_ptr<PresetsCache> cache(new PresetsCache(GetLibraryModule(), true));
  static const boost::intrusive_ptr<PresetsCache> view(new PresetsCache(GetLibraryModule(), true));
  MakeFiles(data, root, outside);

  const auto before = Snapshot(folder.Path());
  cache->Reload();
  const auto after = Snapshot(folder.Path());
  for (const auto& [path, text] : before) {
    Require(after.contains(path), "a reload deletes nothing");
    const bool isPreset = path.ends_with("(Config).orvel") ? IsPreset<ConfigPreset>(text)
                                                           : IsPreset<UserPreset>(text);
    Require(after.at(path) == text || isPreset, "a reload changes no file that it cannot read");
  }
  Require(after.size() == before.size(), "a reload leaves nothing behind");
  const auto known = Describe(*cache);
  cache->Reload();
  Require(Snapshot(folder.Path()) == after, "a second reload changes no byte");
  Require(Describe(*cache) == known, "a second reload finds the same");
  const auto roll = [&data](std::size_t sides) {
    return data.ConsumeIntegralInRange<std::size_t>(0, sides - 1);
  };
  for (int changes = 4; changes > 0 && data.remaining_bytes() > 0; --changes) {
    ChangeAny(*cache, roll, [&data] { return data.ConsumeRandomLengthString(8); });
    const auto configs = ConfigsOf(*cache);
    if (!configs.empty() && roll(6) == 0) {
      const auto& from = configs[roll(configs.size())];
      cache->MigrateUserPresets(from.Guid, configs.front().Guid, data.ConsumeBool());
    }
    view->Reload();
    Require(Describe(*view) == Describe(*cache), "memory and disk agree");
  }
  return 0;
}

}  // namespace orvel::test
