// Reads and writes a document of 10,000 user presets beside nlohmann::json, which only parses and
// dumps the same text, and prints the ratios and the peak memory of each.

#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "orvel/orvel.h"

namespace {

constexpr std::size_t kPresets = 10000;

// Shaped like the dialogue presets that the product ships.
std::vector<orvel::UserPreset> MakePresets() {
  std::mt19937 random(20240917);
  std::uniform_real_distribution<float> value(-15.0f, 10.0f);
  const std::map<std::string, std::size_t> sizes = {{"model_clarity", 8},
                                                    {"model_loudness", 3},
                                                    {"model_restoration", 10},
                                                    {"model_soundeffects", 4},
                                                    {"model_volume", 3}};
  std::vector<orvel::UserPreset> presets(kPresets);
  for (std::size_t i = 0; i < presets.size(); ++i) {
    auto& preset = presets[i];
    preset.Guid = orvel::Guid::CreateUnique();
    preset.Name =
        "$$$/app/Presets/Orvel/User" + std::to_string(i) + "PresetName=Voice " + std::to_string(i);
    preset.PresetData.Config = orvel::Guid("58dc27a8-6a2a-480c-bd0c-4b45fff346a6");
    preset.PresetData.ModeID = "dialog";
    for (const auto& [modelID, size] : sizes) {
      auto& values = preset.PresetData.Models[modelID];
      for (std::size_t k = 0; k < size; ++k) {
        values.push_back(k % 2 == 0 ? value(random) : static_cast<float>(random() % 2));
      }
    }
  }
  return presets;
}

const std::vector<orvel::UserPreset>& Presets() {
  static const auto presets = MakePresets();
  return presets;
}

const std::string& Text() {
  static const std::string text = [] {
    std::string written;
    orvel::WritePresets(Presets(), written);
    return written;
  }();
  return text;
}

void Read() {
  std::vector<orvel::UserPreset> presets;
  orvel::ReadPresets(Text(), presets);
  benchmark::DoNotOptimize(presets.data());
}

void Parse() {
  const auto parsed = nlohmann::json::parse(Text());
  benchmark::DoNotOptimize(&parsed);
}

void Write() {
  std::string text;
  orvel::WritePresets(Presets(), text);
  benchmark::DoNotOptimize(text.data());
}

void Dump() {
  static const auto parsed = nlohmann::json::parse(Text());
  const std::string text = parsed.dump(1, '\t');
  benchmark::DoNotOptimize(text.data());
}

// In a process of its own, so that no other subject's memory counts. In KiB above what the process
// had before.
long PeakMemory(const std::function<void()>& subject) {
  const pid_t child = fork();
  if (child == 0) {
    subject();
    _exit(0);
  }
  rusage usage{};
  wait4(child, nullptr, 0, &usage);
  const pid_t idle = fork();
  if (idle == 0) _exit(0);
  rusage base{};
  wait4(idle, nullptr, 0, &base);
  return usage.ru_maxrss - base.ru_maxrss;
}

class Times : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const auto& run : runs) {
      if (run.aggregate_name == "median")
        medians[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
  }
  std::map<std::string, double> medians;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const struct {
    const char* name;
    void (*run)();
  } subjects[] = {{"read", Read}, {"parse", Parse}, {"write", Write}, {"dump", Dump}};
  for (const auto& subject : subjects) {
    benchmark::RegisterBenchmark(subject.name,
                                 [&subject](benchmark::State& state) {
                                   for (auto iteration : state) subject.run();
                                 })
        ->Unit(benchmark::kMillisecond)
        ->Repetitions(5);
  }
  Text();
  std::printf("%zu user presets, %.1f MB\n", Presets().size(),
              static_cast<double>(Text().size()) / 1e6);
  for (const auto& subject : subjects) {
    std::printf("%-6s peak memory %6.1f MiB\n", subject.name,
                static_cast<double>(PeakMemory(subject.run)) / 1024.0);
  }
  Times times;
  benchmark::RunSpecifiedBenchmarks(&times);
  std::printf(
      "\nours / peer: text to records %.2f of parsing alone (promised 1.00), records to text %.2f "
      "of dumping "
      "(promised 1.00)\n",
      times.medians["read"] / times.medians["parse"],
      times.medians["write"] / times.medians["dump"]);
  return 0;
}
