// Times one call of ParameterMapping beside one call of JUCE's NormalisableRange, the class that
// audio hosts most often use for the same work, and prints the ratios.

#include <array>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/ratio.h"
#include "orvel/definitions/parameter_mapping.h"

#if ORVEL_BENCH_HAS_JUCE
#include <juce_core/juce_core.h>
#endif

namespace {

constexpr float kLow = -40.0f;
constexpr float kHigh = 15.0f;
constexpr float kCurve = 2.5f;
constexpr std::size_t kInputs = 1024;
constexpr std::array<std::size_t, 3> kKeypointCounts{2, 8, 32};

enum class Direction { kFromNormalized, kToNormalized };
enum class Shape { kStraight, kCurved };

struct Subject {
  Direction direction;
  Shape shape;
};

struct SubjectRow {
  Subject subject;
  const char* name;
  double promisedRatio;  // for two keypoints, of our time to JUCE's
};

// clang-format off
constexpr std::array kSubjects{
    //           direction                   shape               name                         promised
    SubjectRow{{Direction::kFromNormalized, Shape::kStraight}, "FromNormalized, straight",    1.5},
    SubjectRow{{Direction::kFromNormalized, Shape::kCurved},   "FromNormalized, curved",      1.0},
    SubjectRow{{Direction::kToNormalized,   Shape::kStraight}, "ToNormalized, straight",      1.5},
    SubjectRow{{Direction::kToNormalized,   Shape::kCurved},   "ToNormalized, curved",        1.0},
};
// clang-format on

// What a subject is called with: the same numbers for both sides, in no order that a branch
// predictor could learn.
std::vector<float> MakeInputs(Direction direction) {
  std::mt19937 engine(20240229);
  const bool normalized = direction == Direction::kFromNormalized;
  std::uniform_real_distribution<float> place(normalized ? 0.0f : kLow, normalized ? 1.0f : kHigh);
  std::vector<float> inputs(kInputs);
  for (float& input : inputs) input = place(engine);
  return inputs;
}

// One iteration is one call of `call` on `object` for each input.
template <typename Object, typename Call>
void Measure(benchmark::State& state, Direction direction, Object& object, Call call) {
  const std::vector<float> inputs = MakeInputs(direction);
  // In a host the object is a member of another: its fields are read anew for every call.
  benchmark::DoNotOptimize(object);
  for (auto _ : state) {
    for (const float input : inputs) benchmark::DoNotOptimize(call(object, input));
  }
}

void MeasureOurs(benchmark::State& state, Subject subject, std::size_t keypointCount) {
  orvel::ParameterMapping mapping(0, subject.shape == Shape::kCurved ? kCurve : 1.0f);
  for (std::size_t i = 0; i < keypointCount; ++i) {
    const float place = static_cast<float>(i) / static_cast<float>(keypointCount - 1);
    mapping.AddKeypoint(kLow + (kHigh - kLow) * place);
  }
  if (subject.direction == Direction::kFromNormalized) {
    Measure(state, subject.direction, mapping,
            [](const auto& m, float x) { return m.FromNormalized(x); });
  } else {
    bool found = false;
    bool ambiguous = false;
    bool interpolated = false;
    Measure(state, subject.direction, mapping, [&](const auto& m, float x) {
      return m.ToNormalized(x, found, ambiguous, interpolated);
    });
  }
}

#if ORVEL_BENCH_HAS_JUCE
// JUCE knows ranges of two points alone, so each of our keypoint counts stands beside the same one.
void MeasureJuce(benchmark::State& state, Subject subject) {
  juce::NormalisableRange<float> range(kLow, kHigh, 0.0f,
                                       subject.shape == Shape::kCurved ? 1.0f / kCurve : 1.0f);
  if (subject.direction == Direction::kFromNormalized) {
    Measure(state, subject.direction, range,
            [](const auto& r, float x) { return r.convertFrom0to1(x); });
  } else {
    Measure(state, subject.direction, range,
            [](const auto& r, float x) { return r.convertTo0to1(x); });
  }
}
#endif

std::string NameOfOurs(const SubjectRow& row, std::size_t keypointCount) {
  return std::string(row.name) + ", " + std::to_string(keypointCount);
}

std::string NameOfJuce(const SubjectRow& row) { return std::string(row.name) + ", JUCE"; }

// Keeps the median of every benchmark's repetitions, and prints the pairs when all have run.
class RatioReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override {
    PrintBasicContext(&std::cerr, context);
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      nanosecondsPerCall_[run.run_name.function_name] = run.GetAdjustedCPUTime() / kInputs;
    }
  }

  void Finalize() override {
    std::printf("%-26s %9s %12s %12s %7s %9s\n", "", "keypoints", "orvel, ns", "JUCE, ns", "ratio",
                "promised");
    for (const SubjectRow& row : kSubjects) {
      for (const std::size_t count : kKeypointCounts) PrintRow(row, count);
    }
    for (const SubjectRow& row : kSubjects) {
      const auto ours = nanosecondsPerCall_.find(NameOfOurs(row, 2));
      const auto juce = nanosecondsPerCall_.find(NameOfJuce(row));
      if (ours == nanosecondsPerCall_.end() || juce == nanosecondsPerCall_.end()) continue;
      bench::PrintRatio(row.name, "JUCE, NormalisableRange", ours->second / juce->second,
                        row.promisedRatio);
    }
  }

 private:
  void PrintRow(const SubjectRow& row, std::size_t keypointCount) const {
    const auto ours = nanosecondsPerCall_.find(NameOfOurs(row, keypointCount));
    if (ours == nanosecondsPerCall_.end()) return;
    std::printf("%-26s %9zu %12.2f", row.name, keypointCount, ours->second);
    const auto juce = nanosecondsPerCall_.find(NameOfJuce(row));
    if (juce != nanosecondsPerCall_.end()) {
      std::printf(" %12.2f %7.2f", juce->second, ours->second / juce->second);
      if (keypointCount == 2) std::printf("  <= %.2f", row.promisedRatio);
    }
    std::printf("\n");
  }

  std::map<std::string, double> nanosecondsPerCall_;
};

void RegisterAll() {
  for (const SubjectRow& row : kSubjects) {
    for (const std::size_t count : kKeypointCounts) {
      benchmark::RegisterBenchmark(NameOfOurs(row, count).c_str(), MeasureOurs, row.subject, count);
    }
#if ORVEL_BENCH_HAS_JUCE
    benchmark::RegisterBenchmark(NameOfJuce(row).c_str(), MeasureJuce, row.subject);
#endif
  }
}

}  // namespace

int main(int argc, char** argv) {
  // Interleaved repetitions let a change of the machine's speed meet both sides alike. Arguments of
  // the command line come later and win.
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::string repetitions = "--benchmark_repetitions=15";
  std::string minTime = "--benchmark_min_time=0.02";
  std::vector<char*> arguments{argv[0], interleaving.data(), repetitions.data(), minTime.data()};
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;

  RegisterAll();
#if !ORVEL_BENCH_HAS_JUCE
  std::puts("Built without JUCE (juce-modules-source-data), so there is nothing to compare with.");
#endif
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
