// Random walks over a whole session, against a plain model of what the clips must hold and what
// must be signalled. ORVEL_WALK_SEED walks one seed again, ORVEL_WALK_STEPS sets the length.

#include <algorithm>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "orvel/actions/offset_model_param_action.h"
#include "orvel/actions/set_mix_type_action.h"
#include "orvel/actions/set_model_param_action.h"
#include "orvel/actions/set_model_param_map_action.h"
#include "orvel/actions/set_user_preset_action.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/configuration/user_presets_handler.h"
#include "orvel/models/clip_keys.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "orvel/models/user_preset_utils.h"
#include "tests/support/environment.h"
#include "tests/support/fake_session.h"

namespace orvel::test {
namespace {

const std::vector<std::string> kModes = {"dialog", "music", "sfx", "ambience"};
constexpr std::size_t kClips = 5;

struct ClipState {
  std::string mode;
  Guid preset;
  std::map<std::string, std::vector<float>> values;
  bool operator==(const ClipState&) const = default;
};

// All that actions change.
struct State {
  std::vector<ClipState> clips;
  std::map<std::string, float> edits;  // of the modes' configurations
  bool operator==(const State&) const = default;
};

struct Step {
  State after;
  int generation = 0;                    // of the section models that it writes to
  std::string bracketed;                 // the section that it silences meanwhile
  const OrvelModel* clearing = nullptr;  // whose section models it lets go of
};

class SessionWalks : public FakeSessionTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  std::size_t Below(std::size_t end) { return random_() % end; }
  bool OneIn(std::size_t n) { return Below(n) == 0; }
  float Value() { return static_cast<float>(Below(1001)) / 1000.0f; }
  template <typename T>
  const T& OneOf(const std::vector<T>& all) {
    return all[Below(all.size())];
  }

  // The plain model: what the clips hold.

  static std::vector<ParamDefinition> Params(const std::string& mode, const std::string& modelID) {
    SectionDefinition definition;
    factory::CreateSectionModelDefinition(modelID, GetModelConfiguration(mode, modelID),
                                          definition);
    return definition.GetParamDefinitions();
  }
  static std::vector<std::string> SectionsOf(const std::string& mode) {
    std::vector<SectionDescriptor> descriptors;
    ModeDescriptorCache::Get()->GetSectionDescriptors(mode, descriptors);
    std::vector<std::string> sections;
    for (const auto& descriptor : descriptors) sections.push_back(descriptor.modelID);
    return sections;
  }
  // Puts a stored list in a clip's values, with defaults beyond it when asked.
  static void Fill(ClipState& clip, const std::string& mode, const std::string& modelID,
                   const std::vector<float>& list, bool withDefaults) {
    auto next = list.begin();
    for (const auto& param : Params(mode, modelID)) {
      if (param.HasFlag(kParamFlag_NotStored)) continue;
      if (next == list.end() && !withDefaults) return;
      const float physical = next == list.end() ? param.defaultValue : *next++;
      clip.values[modelID][static_cast<std::size_t>(param.id)] =
          modelutils::ToNormalized(param.minValue, param.maxValue, physical);
    }
  }
  std::string CommonMode() const {
    std::set<std::string> modes;
    for (const auto clip : selected_) modes.insert(now_.clips[clip].mode);
    return modes.size() == 1 ? *modes.begin() : kAdjustmentsModeUnknown;
  }

  // The plain model: sections and signals.

  void NotifyData() {
    if (posted_) {
      dataPending_ = true;
    } else if (suspended_ == 0) {
      ++dataSignals_;
    }
  }
  void NotifyMix() { (suspended_ > 0 ? mixPending_ : posted_) = true; }
  void ReleaseSections() {
    sections_.clear();
    heldBack_.clear();
    sticky_.clear();
    ++generation_;
    NotifyData();
  }
  void Rebuild() {
    ReleaseSections();
    sectionsMode_ = CommonMode();
    if (sectionsMode_ != kAdjustmentsModeUnknown) sections_ = SectionsOf(sectionsMode_);
  }
  void ResumePlain(bool send) {
    if (--suspended_ > 0) return;
    for (const auto& param : std::exchange(heldBack_, {})) {
      if (!send && !sticky_.contains(param.first)) continue;
      ++paramSignals_[param];
      NotifyData();
    }
    sticky_.clear();
    if (!send) return;
    if (mixPending_) NotifyMix();
    NotifyData();
  }
  // What a step that is executed, undone or redone does.
  void Enter(const State& state, const Step& step) {
    ++suspended_;
    if (step.clearing == model.get()) {
      mixPending_ = true;
      ReleaseSections();
    }
    for (const auto clip : selected_) {
      const ClipState& before = now_.clips[clip];
      const ClipState& after = state.clips[clip];
      if (before.mode != after.mode || before.preset != after.preset) NotifyMix();
      if (step.generation != generation_) continue;
      for (const auto& [modelID, values] : after.values) {
        for (std::size_t id = 0; id < values.size(); ++id) {
          if (values[id] != before.values.at(modelID)[id]) heldBack_.insert({modelID, id});
        }
      }
    }
    if (step.generation == generation_ && !step.bracketed.empty()) sticky_.insert(step.bracketed);
    now_ = state;
    ResumePlain(true);
  }

  // The steps of a walk, each on the library and on the plain model.

  Step NewStep() const { return {now_, generation_, "", nullptr}; }
  void Execute(const boost::intrusive_ptr<Action>& action, const Step& step) {
    if (stack->done == 0 || stack->steps[stack->done - 1] != action) {
      history_.resize(stack->done + 1);
      history_.emplace_back();
    }
    history_.back() = step;
    ASSERT_TRUE(ExecuteOrvelAction(action));
    Enter(step.after, step);
  }
  // Several parameters at once, one, or one by an offset; one may be dragged.
  void Edit() {
    const auto sections = Sections();
    if (sections.empty()) return;
    const auto section = OneOf(sections);
    const std::string modelID = section->GetName();
    const bool isSeveral = OneIn(3);
    const bool isOffset = !isSeveral && OneIn(2);
    const auto any = [&] { return isOffset ? 2.0f * Value() - 1.0f : Value(); };
    const auto id = static_cast<int>(Below(static_cast<std::size_t>(section->GetNumParams())));
    std::map<int, float> values = {{id, any()}};
    for (int other = 0; isSeveral && other < id; ++other) values[other] = Value();
    const auto action = isSeveral ? CreateSetModelParamMapAction(section, values, u"Set")
                        : isOffset
                            ? CreateOffsetModelParamAction(section, id, values[id], u"Offset")
                            : CreateSetModelParamAction(section, id, values[id], u"Set");
    const State first = now_;
    for (bool goesOn = true; goesOn; goesOn = !isSeveral && OneIn(3)) {
      Step step = NewStep();
      if (!isSeveral && selected_.size() > 1) step.bracketed = modelID;
      for (const auto clip : selected_) {
        for (const auto& [param, value] : values) {
          const auto index = static_cast<std::size_t>(param);
          const float from = first.clips[clip].values.at(modelID)[index];
          step.after.clips[clip].values[modelID][index] =
              isOffset ? std::clamp(from + value, 0.0f, 1.0f) : value;
        }
      }
      if (isOffset) ChangeActionParamValue(action, std::nanf(""));  // no place to go to
      ChangeActionParamValue(action, values[id]);
      Execute(action, step);
      values[id] = any();
    }
  }
  UserPreset AnyPreset(const std::string& mode) {
    std::vector<UserPreset> presets;
    ConfigurationManager::Get()->GetPresetsCache()->GetPresets(presets);
    std::erase_if(presets, [&](const auto& preset) { return preset.PresetData.ModeID != mode; });
    UserPreset preset = OneOf(presets);
    auto& lists = preset.PresetData.Models;
    if (OneIn(3)) lists.erase(lists.begin());
    if (OneIn(3)) lists.rbegin()->second.pop_back();
    return preset;
  }
  void ChangeMixType() {
    const std::string mode = OneOf(kModes);
    UserPreset preset = AnyPreset(mode);
    const bool takesDefault = OneIn(3);
    if (takesDefault) CreateUserPresetsHandler(mode)->GetDefaultPreset(preset);
    const auto action = takesDefault
                            ? CreateSetMixTypeWithDefaultPresetAction(model, mode, u"Mix type")
                            : CreateSetMixTypeAction(model, mode, preset, u"Mix type");
    Step step = NewStep();
    step.generation = 0;
    step.clearing = model.get();
    for (const auto clip : selected_) {
      ClipState& state = step.after.clips[clip];
      for (const auto& modelID : sections_) {
        if (sectionsMode_ != mode) Fill(state, sectionsMode_, modelID, {}, true);
      }
      if (state.mode == mode) continue;
      state.preset = preset.Guid;
      state.mode = mode;
      for (const auto& modelID : SectionsOf(mode)) {
        Fill(state, mode, modelID, preset.PresetData.Models[modelID], true);
      }
    }
    Execute(action, step);
  }
  void ApplyPreset() {
    const UserPreset preset = AnyPreset(OneOf(kModes));
    Step step = NewStep();
    for (const auto clip : selected_) {
      step.after.clips[clip].preset = preset.Guid;
      for (const auto& [modelID, list] : preset.PresetData.Models) {
        if (std::count(sections_.begin(), sections_.end(), modelID) == 0) continue;
        Fill(step.after.clips[clip], sectionsMode_, modelID, list, false);
      }
    }
    Execute(CreateSetUserPresetAction(model, preset, u"Preset"), step);
  }
  void Configure() {
    const std::string mode = OneOf(kModes);
    Step step = NewStep();
    PropList configuration = GetModelConfiguration(mode, "model_volume");
    configuration.SetValue("Edited", step.after.edits[mode] = Value());
    boost::intrusive_ptr<Action> action;
    ASSERT_TRUE(ConfigurationManager::Get()->GetSetModelConfigurationAction(mode, "model_volume",
                                                                            configuration, action));
    Execute(action, step);
  }
  void Undo() {
    if (stack->done == 0) return;
    stack->Undo();
    Enter(history_[stack->done].after, history_[stack->done + 1]);
  }
  void Redo() {
    if (stack->done == stack->steps.size()) return;
    stack->Redo();
    Enter(history_[stack->done].after, history_[stack->done]);
  }
  void ChangeSelection() {
    selected_.clear();
    MixTypeClipModels chosen;
    for (std::size_t clip = 0; clip < kClips; ++clip) {
      // Often clips of one mode, which show sections.
      const bool fits =
          selected_.empty() || now_.clips[clip].mode == now_.clips[selected_.front()].mode;
      if (OneIn(fits ? 3 : 8)) continue;
      if (!fits && !OneIn(8)) continue;
      selected_.push_back(clip);
      chosen.push_back(clips_[clip]);
    }
    session->Select(chosen);
    ++suspended_;
    Rebuild();
    ResumePlain(false);
    NotifyMix();
  }
  void TurnLoop() {
    Loop().RunTurn();
    if (!posted_) return;
    Rebuild();
    ++modelSignals_;
    posted_ = mixPending_ = false;
    if (std::exchange(dataPending_, false)) NotifyData();
    if (suspended_ > 0) return;
    UserPresetData held;
    modelutils::GetUserPresetData(Sections(), held);
    EXPECT_TRUE(heardData_ == held);
  }
  void ChangeSession() {
    session->enabled = !session->enabled;
    session->sessionChanged(session->enabled);
    EXPECT_EQ(model->IsEnabled(), session->enabled);
    Rebuild();
    NotifyMix();
  }
  void Suspend() {
    model->SuspendSignaling();
    ++suspended_;
  }
  void Resume() {
    const bool send = OneIn(2);
    model->ResumeSignaling(send);
    if (suspended_ > 0) ResumePlain(send);
  }
  // The one before goes on while a post or an action holds it.
  void Replace() {
    modelConnections_.clear();
    factory::CreateOrvelModel(model);
    modelConnections_.emplace_back(
        model->RegisterForModelChanges([this](const OrvelModel*) { ++heardModel_; }));
    modelConnections_.emplace_back(model->RegisterForSectionModelDataChanges(
        [this](const OrvelModel*, const UserPresetData& data) {
          ++heardDataSignals_;
          heardData_ = data;
        }));
    posted_ = mixPending_ = dataPending_ = false;
    suspended_ = 1;  // nobody listens yet
    Rebuild();
    suspended_ = 0;
  }

  // Listens to the section models that are there now.
  void Listen() {
    connections_.clear();
    for (const auto& section : Sections()) {
      connections_.emplace_back(
          section->RegisterForModelChanges([this, modelID = section->GetName()](int id, float) {
            ++heardParams_[{modelID, id}];
          }));
    }
  }
  void Compare() {
    for (std::size_t i = 0; i < kClips; ++i) {
      const ClipState& expected = now_.clips[i];
      EXPECT_EQ(clips_[i]->mode, expected.mode);
      EXPECT_EQ(clips_[i]->preset, expected.preset);
      for (const auto& [modelID, values] : expected.values) {
        EXPECT_EQ(clips_[i]->Values(modelID), values) << modelID;
      }
    }
    std::vector<std::string> names;
    for (const auto& section : Sections()) names.push_back(section->GetName());
    EXPECT_EQ(names, sections_);
    for (const auto& mode : kModes) {
      EXPECT_EQ(ConfigurationManager::Get()->IsCurrentConfigDirtyForMode(mode),
                now_.edits.contains(mode));
    }
    EXPECT_EQ(heardParams_, paramSignals_);
    EXPECT_EQ(heardDataSignals_, dataSignals_);
    EXPECT_EQ(heardModel_, modelSignals_);
  }

  void Start(unsigned seed) {
    random_.seed(seed);
    for (std::size_t i = 0; i < kClips; ++i) {
      const std::string& mode = i == 0 ? kAdjustmentsModeUnknown : kModes[i % 2];
      clips_.emplace_back(new FakeClip("clip", mode));
      ClipState& state = now_.clips.emplace_back(ClipState{mode, {}, {}});
      for (const auto& inMode : kModes) {
        for (const auto& modelID : SectionsOf(inMode)) {
          auto& values = clips_.back()->Values(modelID);
          while (values.size() < Params(inMode, modelID).size()) values.push_back(Value());
          state.values[modelID] = values;
        }
      }
    }
    history_ = {{now_, 0, "", nullptr}};
    Replace();
    Listen();
  }
  void WalkFor(int steps) {
    using Walk = SessionWalks;
    constexpr void (Walk::*kSteps[])() = {
        &Walk::Edit,          &Walk::ChangeMixType, &Walk::ApplyPreset,     &Walk::Configure,
        &Walk::Undo,          &Walk::Redo,          &Walk::ChangeSelection, &Walk::TurnLoop,
        &Walk::ChangeSession, &Walk::Suspend,       &Walk::Resume,          &Walk::Replace};
    std::discrete_distribution<std::size_t> anyStep{9, 3, 2, 1, 6, 3, 2, 6, 1, 1, 3, 1};
    for (int n = 0; n < steps && !HasFailure(); ++n) {
      SCOPED_TRACE("step " + std::to_string(n));
      const int generation = generation_;
      (this->*kSteps[anyStep(random_)])();
      Compare();
      if (generation != generation_) Listen();
    }
  }

  std::mt19937 random_;
  std::vector<boost::intrusive_ptr<FakeClip>> clips_;

  State now_;
  std::vector<Step> history_;  // the state at the start, and after each step of the stack
  std::vector<std::size_t> selected_;
  std::vector<std::string> sections_;
  std::string sectionsMode_;
  int generation_ = 1;
  int suspended_ = 0;
  bool posted_ = false, mixPending_ = false, dataPending_ = false;
  std::set<std::pair<std::string, int>> heldBack_;
  std::set<std::string> sticky_;

  // Signals as the plain model expects them, and as they were heard.
  std::map<std::pair<std::string, int>, int> paramSignals_, heardParams_;
  int dataSignals_ = 0, heardDataSignals_ = 0, modelSignals_ = 0, heardModel_ = 0;
  UserPresetData heardData_;
  std::vector<boost::signals2::scoped_connection> connections_, modelConnections_;
};

TEST_P(SessionWalks, EveryStepDoesWhatThePlainModelSaysAndUndoLeadsBackToTheStart) {
  const unsigned walked = Asked("ORVEL_WALK_SEED", GetParam());
  SCOPED_TRACE("to walk it again: ORVEL_WALK_SEED=" + std::to_string(walked));
  Start(walked);
  WalkFor(static_cast<int>(Asked("ORVEL_WALK_STEPS", 1500)));
  while (stack->done > 0 && !HasFailure()) Undo();
  EXPECT_TRUE(now_ == history_.front().after);
  Compare();
}

INSTANTIATE_TEST_SUITE_P(Seeds, SessionWalks, ::testing::Range(1u, 5u));

}  // namespace
}  // namespace orvel::test
