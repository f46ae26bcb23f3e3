// Changes one control on many clips, undoes and redoes it, and makes a large selection ready.
//
// The first is timed beside JUCE's ValueTree with an UndoManager and one listener, which keeps a
// property per clip and maps nothing onto effects; our clips are those of the examples. Both sides
// make their undo step anew each time and drop it afterwards.

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/ratio.h"
#include "examples/clip_section.h"
#include "orvel/orvel.h"

#if ORVEL_BENCH_HAS_JUCE
#include <juce_data_structures/juce_data_structures.h>
#endif
#if ORVEL_BENCH_HAS_HOST
#include "host/session/clip.h"
#include "host/session/clip_section_model.h"
#endif

// Every allocation of the program and its libraries is counted.
extern "C" {
void* __libc_malloc(std::size_t size);                     // NOLINT: glibc's name
void* __libc_calloc(std::size_t count, std::size_t size);  // NOLINT
void* __libc_realloc(void* block, std::size_t size);       // NOLINT
static std::size_t allocationCount = 0;
void* malloc(std::size_t size) {
  ++allocationCount;
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  ++allocationCount;
  return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
  ++allocationCount;
  return __libc_realloc(block, size);
}
}

namespace {

constexpr double kPromisedRatio = 4.0;  // of our time to JUCE's, for one clip of many
const std::vector<int> kClipCounts = {1, 10, 100, 1000, 10000};

class ManyClips {
 public:
  explicit ManyClips(int count) {
    orvel::SectionDefinition definition;
    orvel::factory::CreateSectionModelDefinition("model_volume", orvel::PropList(), definition);
    const auto shared = std::make_shared<const orvel::SectionDefinition>(definition);
    for (int i = 0; i < count; ++i) {
      model_->AddModel(
          new example::ClipSection("dialog", shared, std::make_shared<example::SectionState>()));
    }
    model_->RegisterForModelChanges([this](int, float) { ++signals_; });
  }
  void ChangeUndoRedo(float value) {
    constexpr int kVolume = orvel::SectionModelVolumeParams::kVolume;
    const auto action = orvel::CreateSetModelParamAction(model_, kVolume, value, u"Change Volume");
    action->Redo();
    action->Undo();
    action->Redo();
  }
  long Signals() const { return signals_; }

 private:
  boost::intrusive_ptr<orvel::SectionMultiModel> model_{new orvel::SectionMultiModel("dialog")};
  long signals_ = 0;
};

#if ORVEL_BENCH_HAS_JUCE
class ManyTrees : private juce::ValueTree::Listener {
 public:
  explicit ManyTrees(int count) {
    for (int i = 0; i < count; ++i) {
      juce::ValueTree clip("clip");
      clip.setProperty("volume", 0.0f, nullptr);
      root_.appendChild(clip, nullptr);
    }
    root_.addListener(this);
  }
  void ChangeUndoRedo(float value) {
    static const juce::Identifier volume("volume");
    undoManager_.beginNewTransaction("Change Volume");
    for (auto clip : root_) clip.setProperty(volume, value, &undoManager_);
    undoManager_.undo();
    undoManager_.redo();
    undoManager_.clearUndoHistory();
  }
  long Signals() const { return signals_; }

 private:
  void valueTreePropertyChanged(juce::ValueTree&, const juce::Identifier&) override { ++signals_; }

  juce::ValueTree root_{"session"};
  juce::UndoManager undoManager_;
  long signals_ = 0;
};
#endif

template <typename Subject>
void ChangeUndoRedo(benchmark::State& state) {
  Subject subject(static_cast<int>(state.range(0)));
  float value = 0.25f;
  subject.ChangeUndoRedo(value);
  const std::size_t before = allocationCount;
  for (auto iteration : state) {
    value = 0.75f - value;
    subject.ChangeUndoRedo(value);
  }
  const auto changes = static_cast<double>(state.iterations() * state.range(0));
  state.counters["allocations"] = static_cast<double>(allocationCount - before) / changes;
  benchmark::DoNotOptimize(subject.Signals());
}

#if ORVEL_BENCH_HAS_HOST
void MakeReady(benchmark::State& state) {
  orvelhost::InstallSectionModels();
  orvel::MixTypeClipModels clips;
  for (int i = 0; i < state.range(0); ++i) {
    const boost::intrusive_ptr<orvelhost::Clip> clip(new orvelhost::Clip("clip", {48000, 2}));
    clip->SetAdjustmentsMode("dialog");
    clips.push_back(clip);
  }
  for (auto iteration : state) {
    boost::intrusive_ptr<orvel::OrvelModel> model;
    orvel::factory::CreateOrvelModelForClips(clips, model);
    teskcore::threads::GetDefaultEventLoop()->Drain();
    benchmark::DoNotOptimize(model->IsReady());
  }
  orvelhost::UninstallSectionModels();
}
#endif

// Keeps the median of each benchmark, in nanoseconds per clip, with its allocations.
class PerClip : public benchmark::ConsoleReporter {
 public:
  struct Figures {
    double nanoseconds = 0.0;
    double allocations = 0.0;
  };
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const auto& run : runs) {
      if (run.aggregate_name != "median") continue;
      const int clips = std::atoi(run.run_name.args.c_str());
      auto& figures = medians[run.run_name.function_name][clips];
      figures.nanoseconds = run.GetAdjustedCPUTime() / clips;
      const auto counted = run.counters.find("allocations");
      if (counted != run.counters.end()) figures.allocations = counted->second;
    }
  }
  std::map<std::string, std::map<int, Figures>> medians;
};

template <typename Function>
void Register(const char* name, Function function) {
  for (const int count : kClipCounts) {
    benchmark::RegisterBenchmark(name, function)
        ->Arg(count)
        ->Repetitions(7)
        ->ReportAggregatesOnly(true)
        ->MinTime(0.05);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  orvel::Initialize(nullptr, nullptr, orvel::GetDefaultAdjustmentsModeDescriptors());
  Register("ours", ChangeUndoRedo<ManyClips>);
#if ORVEL_BENCH_HAS_JUCE
  Register("peer", ChangeUndoRedo<ManyTrees>);
#endif
#if ORVEL_BENCH_HAS_HOST
  Register("ready", MakeReady);
#endif
  PerClip results;
  benchmark::RunSpecifiedBenchmarks(&results);

  std::printf("\none control changed, undone and redone, per clip\n");
  std::printf("%8s %10s %8s %10s %8s %7s\n", "clips", "ours ns", "allocs", "JUCE ns", "allocs",
              "ratio");
  for (const int count : kClipCounts) {
    const auto ours = results.medians["ours"][count];
    const auto peer = results.medians["peer"][count];
    std::printf("%8d %10.1f %8.2f %10.1f %8.2f %7.2f\n", count, ours.nanoseconds, ours.allocations,
                peer.nanoseconds, peer.allocations, ours.nanoseconds / peer.nanoseconds);
  }
  for (const int count : kClipCounts) {
    const double peer = results.medians["peer"][count].nanoseconds;
    if (count < 100 || peer == 0.0) continue;
    const std::string what = "one control on " + std::to_string(count) + " clips, with undo";
    bench::PrintRatio(what.c_str(), "JUCE, ValueTree, UndoManager",
                      results.medians["ours"][count].nanoseconds / peer, kPromisedRatio);
  }
  for (const auto& [count, figures] : results.medians["ready"]) {
    std::printf("a selection of %5d dialogue clips is ready after %8.1f us per clip\n", count,
                figures.nanoseconds / 1000.0);
  }
  orvel::Terminate();
  return 0;
}
