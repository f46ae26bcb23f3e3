// Changes one control on many clips, undoes and redoes it, and makes a large selection ready.
//
// The first is timed beside JUCE's ValueTree with an UndoManager and one listener, which keeps a
// property per clip and maps nothing onto effects. Both sides make their undo step anew each time
// and drop it afterwards.

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

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

// What the clips of a host share.
struct Section {
  orvel::SectionDefinition definition;
  std::vector<std::vector<const orvel::ParameterMapping*>> mappings;  // by parameter
  std::size_t effectParams = 0;

  Section() {
    orvel::factory::CreateSectionModelDefinition("model_volume", orvel::PropList(), definition);
    mappings.resize(definition.GetParamDefinitions().size());
    for (const auto& control : definition.GetControlDefinitions()) {
      for (const auto& [paramID, list] : control.GetParameterMap()) {
        for (const auto& mapping : list) {
          mappings[static_cast<std::size_t>(paramID)].push_back(&mapping);
          effectParams = std::max<std::size_t>(effectParams, mapping.GetParamIndex() + 1);
        }
      }
    }
  }
};

// A clip's volume, as lean as a host would write it: a value goes through the section's mappings
// onto the limiter of the clip.
class VolumeModel : public orvel::SectionModelInterface {
 public:
  explicit VolumeModel(const std::shared_ptr<const Section>& section)
      : section_(section), values_(section->mappings.size()), effect_(section->effectParams) {}

  int GetNumParams() const override { return static_cast<int>(values_.size()); }
  orvel::ParamDefinition GetParamDefinition(int id) override { return Definition(id); }
  bool GetSectionDefinition(orvel::SectionDefinition& definition) const override {
    definition = section_->definition;
    return true;
  }
  int SetParamNormalized(int id, float value) override {
    const auto index = static_cast<std::size_t>(id);
    if (values_[index] == value) return 0;
    values_[index] = value;
    for (const auto* mapping : section_->mappings[index]) {
      effect_[mapping->GetParamIndex()] = mapping->FromNormalized(value);
    }
    heldBack_ |= 1u << id;
    Send();
    return 0;
  }
  int SetParamsNormalized(const std::map<int, float>& values) override {
    for (const auto& [id, value] : values) SetParamNormalized(id, value);
    return 0;
  }
  int GetParamNormalized(int id, float& value) const override {
    value = values_[static_cast<std::size_t>(id)];
    return 0;
  }
  bool ToPhysical(int id, float value, float& physical) const override {
    physical =
        orvel::modelutils::ToPhysical(Definition(id).minValue, Definition(id).maxValue, value);
    return true;
  }
  bool ToNormalized(int id, float physical, float& value) const override {
    value =
        orvel::modelutils::ToNormalized(Definition(id).minValue, Definition(id).maxValue, physical);
    return true;
  }
  std::string GetName() override { return section_->definition.GetModelID(); }
  boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) override {
    return changed_.connect(slot);
  }
  void SetActive(bool active) override { active_ = active; }
  bool IsActive() const override { return active_; }
  std::string GetAdjustmentsMode() override { return "dialog"; }
  void SuspendSignaling() override { ++suspendCount_; }
  void ResumeSignaling(bool sendSignals) override {
    if (--suspendCount_ > 0) return;
    if (!sendSignals) heldBack_ = 0;
    Send();
  }

 private:
  const orvel::ParamDefinition& Definition(int id) const {
    return section_->definition.GetParamDefinitions()[static_cast<std::size_t>(id)];
  }
  void Send() {
    for (int id = 0; heldBack_ != 0 && suspendCount_ == 0; ++id) {
      if ((heldBack_ & 1u << id) == 0) continue;
      heldBack_ &= ~(1u << id);
      changed_(id, values_[static_cast<std::size_t>(id)]);
    }
  }

  std::shared_ptr<const Section> section_;
  std::vector<float> values_;
  std::vector<float> effect_;
  unsigned heldBack_ = 0;
  int suspendCount_ = 0;
  bool active_ = false;
  ChangeSignal changed_;
};

class ManyClips {
 public:
  explicit ManyClips(int count) {
    const auto section = std::make_shared<const Section>();
    for (int i = 0; i < count; ++i) model_->AddModel(new VolumeModel(section));
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
  std::printf("promised from 100 clips on: %.1f\n", kPromisedRatio);
  for (const auto& [count, figures] : results.medians["ready"]) {
    std::printf("a selection of %5d dialogue clips is ready after %8.1f us per clip\n", count,
                figures.nanoseconds / 1000.0);
  }
  orvel::Terminate();
  return 0;
}
