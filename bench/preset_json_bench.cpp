// Reads and writes a document of 10,000 user presets beside nlohmann::json, which only parses and
// dumps the same text, and prints the ratios and the peak memory of each.

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/ratio.h"
#include "bench/sample_presets.h"
#include "orvel/orvel.h"

namespace {

constexpr std::size_t kPresets = 10000;

std::vector<orvel::UserPreset> MakePresets() {
  std::vector<orvel::UserPreset> presets;
  presets.reserve(kPresets);
  for (std::size_t i = 0; i < kPresets; ++i) {
    const std::string number = std::to_string(i);
    std::string name = "$$$/app/Presets/Orvel/User";
    name.append(number).append("PresetName=Voice ").append(number);
    presets.push_back(bench::MakePreset(name));
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
  bench::PrintRatio("presets, text to records", "nlohmann::json, parsing",
                    times.medians["read"] / times.medians["parse"], 1.0);
  bench::PrintRatio("presets, records to text", "nlohmann::json, dumping",
                    times.medians["write"] / times.medians["dump"], 1.0);
  return 0;
}
