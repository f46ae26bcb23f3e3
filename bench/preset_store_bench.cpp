// Reads a folder of 10,000 user presets beside nlohmann::json, which only reads the same files'
// bytes and parses them; and saves one preset among 10,000 beside one among 10: in the place of
// another, once more, and under a new name. Prints the ratios.

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "bench/ratio.h"
#include "bench/sample_presets.h"
#include "orvel/orvel.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using bench::MakePreset;
using bench::Median;
using Cache = boost::intrusive_ptr<orvel::PresetsCache>;

constexpr std::size_t kMany = 10000;
constexpr std::size_t kFew = 10;
constexpr int kReloads = 15;
constexpr int kSaves = 501;

// A store of its own with so many presets.
struct Store {
  explicit Store(std::size_t presets)
      : folder(fs::temp_directory_path() /
               ("orvel-bench-" + orvel::Guid::CreateUnique().AsUTF8String())) {
    const fs::path mode = folder / "Presets/Orvel/Default/dialog";
    fs::create_directories(mode);
    orvel::ConfigPreset config;
    config.Guid = bench::kDialogConfig;
    config.PresetData.ModeID = "dialog";
    std::string text;
    orvel::WritePreset(config, text);
    std::ofstream(mode / "(Config).orvel", std::ios::binary) << text;
    for (std::size_t i = 0; i < presets; ++i) {
      const auto preset = MakePreset("Voice " + std::to_string(i));
      orvel::WritePreset(preset, text);
      files.push_back(mode / (preset.Name + ".orvel"));
      std::ofstream(files.back(), std::ios::binary) << text;
    }
    orvel::Dir::SetPrefDir(orvel::Dir(folder.u16string()));
    cache.reset(new orvel::PresetsCache(orvel::GetLibraryModule(), true));
  }
  ~Store() { fs::remove_all(folder); }

  fs::path folder;
  std::vector<fs::path> files;
  Cache cache;
};

template <typename Work>
double MillisecondsOf(Work work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

std::size_t Parse(const std::vector<fs::path>& files) {
  std::size_t members = 0;
  for (const auto& file : files) {
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(fs::file_size(file), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    members += nlohmann::json::parse(bytes).size();
  }
  return members;
}

void CompareReloads(const Store& store) {
  std::vector<double> ours;
  std::vector<double> parsing;
  for (int i = 0; i < kReloads; ++i) {
    ours.push_back(MillisecondsOf([&store] { store.cache->Reload(); }));
    parsing.push_back(MillisecondsOf([&store] {
      if (Parse(store.files) != 5 * store.files.size()) std::printf("not what was written\n");
    }));
  }
  std::vector<orvel::UserPreset> presets;
  store.cache->GetPresets(presets);
  std::printf("Reload of %zu user presets %.1f ms, their bytes and nlohmann::json %.1f ms\n",
              presets.size(), Median(ours), Median(parsing));
  bench::PrintRatio("reload of 10,000 presets", "nlohmann::json, same files",
                    Median(ours) / Median(parsing), 1.0);
}

double TimeOfSave(const Store& store, const orvel::UserPreset& preset) {
  return MillisecondsOf([&store, &preset] {
    if (!store.cache->SavePreset(preset)) std::printf("not saved\n");
  });
}

double ReplaceAnother(const Store& store, int i) {
  return TimeOfSave(store,
                    MakePreset("Voice " + std::to_string(static_cast<std::size_t>(i) % kFew)));
}

double SaveAgain(const Store& store, int) {
  const auto preset = MakePreset("Voice 0");
  TimeOfSave(store, preset);
  return TimeOfSave(store, preset);
}

double SaveNew(const Store& store, int i) {
  const auto preset = MakePreset("New " + std::to_string(i));
  const double time = TimeOfSave(store, preset);
  store.cache->RemovePreset(preset.Guid, preset.PresetData.Config);
  return time;
}

// Alternately, so that both meet the same weather.
void CompareSaves(const char* name, const Store& many, const Store& few,
                  double (*save)(const Store& store, int i)) {
  std::vector<double> amongMany;
  std::vector<double> amongFew;
  for (int i = 0; i < kSaves; ++i) {
    amongMany.push_back(save(many, i));
    amongFew.push_back(save(few, i));
  }
  std::printf("A preset saved %s among %zu presets %.3f ms, among %zu %.3f ms\n", name, kMany,
              Median(amongMany), kFew, Median(amongFew));
  bench::PrintRatio("one save among 10,000 presets", "one save among 10",
                    Median(amongMany) / Median(amongFew), 1.0);
}

}  // namespace

int main() {
  const Store many(kMany);
  const Store few(kFew);
  CompareReloads(many);
  CompareSaves("in the place of another", many, few, ReplaceAnother);
  CompareSaves("once more", many, few, SaveAgain);
  CompareSaves("under a new name", many, few, SaveNew);
  return 0;
}
