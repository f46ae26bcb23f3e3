// Two clips are selected, one control moves on both, and the move is undone. It shows the rest of
// what a host brings: clips, a session that selects them, an undo stack; and how their signals
// arrive. What the values do to effects is left to embed_orvel.

#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "examples/clip_section.h"
#include "orvel/orvel.h"

namespace {

class Clip : public orvel::MixTypeClipModelInterface {
 public:
  Clip(const std::string& name, const std::string& modeID) : name_(name), modeID_(modeID) {}

  int GetClipType(orvel::ClipType& type) override {
    type = type_;
    return 0;
  }
  int SetClipType(orvel::ClipType type) override { return Set(type_, type); }
  int GetAdjustmentsMode(std::string& modeID) override {
    modeID = modeID_;
    return 0;
  }
  int SetAdjustmentsMode(const std::string& modeID) override { return Set(modeID_, modeID); }
  int GetUserPresetGuid(orvel::Guid& guid) override {
    guid = presetGuid_;
    return 0;
  }
  int SetUserPresetGuid(const orvel::Guid& guid) override { return Set(presetGuid_, guid); }
  bool IsReady() override { return true; }
  std::string GetName() override { return name_; }
  boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) override {
    return changed_.connect(slot);
  }
  void AttachToModel(bool, orvel::OrvelModel*) override {}

  // Of each section, by its model id; made when it is first asked for.
  std::shared_ptr<example::SectionState> GetSection(const std::string& modelID) {
    auto& section = sections_[modelID];
    if (!section) section = std::make_shared<example::SectionState>();
    return section;
  }

 private:
  template <typename T>
  int Set(T& field, const T& value) {
    if (!(std::exchange(field, value) == value)) changed_();
    return 0;
  }

  std::string name_;
  std::string modeID_;
  orvel::ClipType type_ = orvel::type_not_set;
  orvel::Guid presetGuid_;
  std::map<std::string, std::shared_ptr<example::SectionState>> sections_;
  ChangeSignal changed_;
};

class Session : public orvel::SessionHandlerInterface {
 public:
  boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type& slot) override {
    return selectionChanged_.connect(slot);
  }
  boost::signals2::connection RegisterForSessionChanges(
      const SessionSignal::slot_type& slot) override {
    return sessionChanged_.connect(slot);
  }
  orvel::MixTypeClipModels GetSelectedMixTypeClipModels() override { return selected_; }
  bool IsSessionEnabled() override { return true; }

  void Select(const orvel::MixTypeClipModels& clips) {
    selected_ = clips;
    selectionChanged_(selected_);
  }

 private:
  orvel::MixTypeClipModels selected_;
  SelectionSignal selectionChanged_;
  SessionSignal sessionChanged_;
};

class UndoStack : public orvel::ActionExecutor {
 public:
  bool Execute(const boost::intrusive_ptr<orvel::Action>& action) override {
    Run([&] { action->Redo(); });
    // The same action again is a control that is still being dragged: one step.
    if (done_.empty() || done_.back() != action) done_.push_back(action);
    return true;
  }
  bool ExecuteWithoutUndo(const boost::intrusive_ptr<orvel::Action>& action, bool) override {
    Run([&] { action->Redo(); });
    return true;
  }
  void Undo() {
    if (done_.empty()) return;
    const auto action = done_.back();
    done_.pop_back();
    Run([&] { action->Undo(); });
  }
  boost::signals2::connection RegisterForActionExecutionScopeChanges(
      const ScopeSignal::slot_type& slot) override {
    return scopeChanged_.connect(slot);
  }

 private:
  void Run(const std::function<void()>& step) {
    scopeChanged_(true, true);
    step();
    scopeChanged_(false, true);
  }

  std::vector<boost::intrusive_ptr<orvel::Action>> done_;
  ScopeSignal scopeChanged_;
};

// One section for the clips: of several clips, their sections as one.
void CreateSection(const std::string& modeID, const orvel::SectionDefinition& definition,
                   const boost::intrusive_ptr<orvel::SessionHandlerInterface>&,
                   const orvel::MixTypeClipModels& clips, bool,
                   boost::intrusive_ptr<orvel::SectionModelInterface>& model) {
  const auto shared = std::make_shared<const orvel::SectionDefinition>(definition);
  const boost::intrusive_ptr<orvel::SectionMultiModel> all(new orvel::SectionMultiModel(modeID));
  for (const auto& clip : clips) {
    const auto state = dynamic_cast<Clip&>(*clip).GetSection(definition.GetModelID());
    model = new example::ClipSection(modeID, shared, state);
    all->AddModel(model);
  }
  if (clips.size() > 1) model = all;
}

}  // namespace

int main() {
  const boost::intrusive_ptr<Session> session(new Session);
  const boost::intrusive_ptr<UndoStack> undoStack(new UndoStack);
  orvel::factory::SetGenericFactoryFunction(&CreateSection);
  orvel::Initialize(session, undoStack, orvel::GetDefaultAdjustmentsModeDescriptors());
  const auto eventLoop = teskcore::threads::GetDefaultEventLoop();

  // The panel: it follows the selection and shows what the signals tell.
  boost::intrusive_ptr<orvel::OrvelModel> panel;
  orvel::factory::CreateOrvelModel(panel);
  panel->RegisterForModelChanges([](const orvel::OrvelModel* model) {
    orvel::OrvelModel::SectionModels sections;
    model->GetSectionModels(sections);
    std::cout << model->GetModelName() << ": " << sections.size() << " sections\n";
  });

  const boost::intrusive_ptr<Clip> voice(new Clip("voice", "dialog"));
  const boost::intrusive_ptr<Clip> answer(new Clip("answer", "dialog"));
  session->Select({voice, answer});
  eventLoop->Drain();

  // One of its controls.
  constexpr int kVolume = orvel::SectionModelVolumeParams::kVolume;
  boost::intrusive_ptr<orvel::SectionModelInterface> volume;
  panel->GetSectionModel("model_volume", volume);
  const auto show = [&](const char* when) {
    orvel::modelutils::ValueSummary values;
    orvel::modelutils::GetValueSummary(volume, kVolume, values);
    float least = 0.0f;
    float greatest = 0.0f;
    volume->ToPhysical(kVolume, values.least, least);
    volume->ToPhysical(kVolume, values.greatest, greatest);
    std::cout << when << ": " << least << " dB";
    if (values.mixed) std::cout << " to " << greatest << " dB";
    std::cout << '\n';
  };
  const boost::signals2::scoped_connection connection = volume->RegisterForModelChanges(
      [&](int id, float) { std::cout << "signal: parameter " << id << " changed\n"; });
  const auto normalized = [&](float decibels) {
    float value = 0.0f;
    volume->ToNormalized(kVolume, decibels, value);
    return value;
  };

  // The clips differ, as after edits of single clips.
  auto& members = dynamic_cast<orvel::SectionMultiModel&>(*volume).GetModels();
  (*members.begin())->SetParamNormalized(kVolume, normalized(-6.0f));
  show("two clips");

  // A drag: one action, moved and executed again, is one step.
  const auto action =
      orvel::CreateSetModelParamAction(volume, kVolume, normalized(-1.0f), u"Volume");
  orvel::ExecuteOrvelAction(action);
  orvel::ChangeActionParamValue(action, normalized(-3.0f));
  orvel::ExecuteOrvelAction(action);
  show("dragged");
  undoStack->Undo();
  show("undone");

  // A preset of the menu, by the name that it shows, for both clips in one step.
  const auto presets = orvel::CreateUserPresetsHandler("dialog");
  for (const auto& [guid, name] : presets->GetPresetList()) {
    if (orvel::ZString(name) == u"Podcast Voice") presets->Select(guid);
  }
  orvel::ExecuteOrvelAction(
      orvel::CreateSetUserPresetAction(panel, presets->GetSelectedPreset(), u"Preset"));
  show("preset");

  orvel::Terminate();
  return 0;
}
