#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvel/actions/action_executor.h"
#include "orvel/core/event_loop.h"
#include "orvel/definitions/lifecycle.h"
#include "orvel/models/adjustments_modes_json.h"
#include "orvel/models/orvel_model.h"
#include "orvel/models/section_multi_model.h"
#include "orvel/models/session_handler_interface.h"
#include "tests/support/fake_section_model.h"
#include "tests/support/preset_store.h"

namespace orvel::test {

/// A clip that keeps everything, the values of its sections too, and tells of every change.
class FakeClip : public MixTypeClipModelInterface {
 public:
  explicit FakeClip(const std::string& clipName, const std::string& modeID = "dialog")
      : name(clipName), mode(modeID) {}

  int GetClipType(ClipType& out) override { return Get(type, out); }
  int SetClipType(ClipType value) override { return Set(type, value); }
  int GetAdjustmentsMode(std::string& out) override { return Get(mode, out); }
  int SetAdjustmentsMode(const std::string& value) override {
    written += "mode ";
    return Set(mode, value);
  }
  int GetUserPresetGuid(Guid& out) override { return Get(preset, out); }
  int SetUserPresetGuid(const Guid& value) override {
    written += "guid ";
    return Set(preset, value);
  }
  bool IsReady() override { return ready; }
  std::string GetName() override { return name; }
  boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) override {
    return changed.connect(slot);
  }
  void AttachToModel(bool attached, OrvelModel* model) override {
    attachedTo = model;
    const auto told = onAttach;  // it may replace itself
    if (told) told(attached);
  }

  std::vector<float>& Values(const std::string& modelID) { return *Storage(modelID); }
  std::shared_ptr<std::vector<float>> Storage(const std::string& modelID) {
    auto& storage = sections_[modelID];
    if (!storage) storage = std::make_shared<std::vector<float>>();
    return storage;
  }

  std::string name;
  std::string mode;
  Guid preset;
  ClipType type = type_not_set;
  bool ready = true;
  int status = 0;       // of every read
  std::string written;  // what the setters were called for
  OrvelModel* attachedTo = nullptr;
  boost::function<void(bool attached)> onAttach;
  ChangeSignal changed;

 private:
  template <typename T>
  int Get(const T& field, T& out) const {
    if (status == 0) out = field;
    return status;
  }
  template <typename T>
  int Set(T& field, const T& value) {
    if (!(std::exchange(field, value) == value)) changed();
    return 0;
  }
  std::map<std::string, std::shared_ptr<std::vector<float>>> sections_;
};

class FakeSession : public SessionHandlerInterface {
 public:
  boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type& slot) override {
    return selectionChanged.connect(slot);
  }
  boost::signals2::connection RegisterForSessionChanges(
      const SessionSignal::slot_type& slot) override {
    return sessionChanged.connect(slot);
  }
  MixTypeClipModels GetSelectedMixTypeClipModels() override { return selected; }
  bool IsSessionEnabled() override { return enabled; }

  void Select(const MixTypeClipModels& clips) {
    selected = clips;
    selectionChanged(clips);
  }

  MixTypeClipModels selected;
  bool enabled = true;
  SelectionSignal selectionChanged;
  SessionSignal sessionChanged;
};

/// An undo stack. The action on its top, executed again, stays one step.
class FakeExecutor : public ActionExecutor {
 public:
  bool Execute(const boost::intrusive_ptr<Action>& action) override {
    const bool isAgain = done > 0 && done == steps.size() && steps.back() == action;
    Run([&] { action->Redo(); });
    if (isAgain) return true;
    steps.resize(done);
    steps.push_back(action);
    ++done;
    return true;
  }
  bool ExecuteWithoutUndo(const boost::intrusive_ptr<Action>& action, bool sendSignals) override {
    Run([&] { action->Redo(); }, sendSignals);
    return true;
  }
  void Undo() {
    Run([this] { steps[--done]->Undo(); });
  }
  void Redo() {
    Run([this] { steps[done++]->Redo(); });
  }
  boost::signals2::connection RegisterForActionExecutionScopeChanges(
      const ScopeSignal::slot_type& slot) override {
    return scopeChanged.connect(slot);
  }

  std::vector<boost::intrusive_ptr<Action>> steps;
  std::size_t done = 0;
  ScopeSignal scopeChanged;

 private:
  template <typename Step>
  void Run(Step step, bool sendSignals = true) {
    scopeChanged(true, sendSignals);
    step();
    scopeChanged(false, sendSignals);
  }
};

/// The library with such a session, an undo stack and the built-in modes; a preset folder of its
/// own. The model is the test's to make.
class FakeSessionTest : public PresetStore {
 protected:
  void SetUp() override {
    // A section over the clip's values, several clips' as one.
    factory::SetGenericFactoryFunction([this](const auto& mode, const auto& definition, const auto&,
                                              const auto& clips, bool follows, auto& section) {
      const boost::intrusive_ptr<SectionMultiModel> multi(new SectionMultiModel(mode));
      for (const auto& clip : clips) {
        auto& fake = dynamic_cast<FakeClip&>(*clip);
        section = new FakeSectionModel(definition, mode, fake.Storage(definition.GetModelID()));
        multi->AddModel(section);
      }
      if (clips.size() > 1) section = multi;
      if (onMade) onMade(section, follows);
    });
    Initialize(session, stack, GetDefaultAdjustmentsModeDescriptors());
  }
  void TearDown() override {
    onMade = {};
    model.reset();
    Loop().Drain();
    stack->steps.clear();
    Terminate();
    SetOrvelActionExecutor(nullptr);
    factory::SetGenericFactoryFunction({});
  }
  static QueuedEventLoop& Loop() { return *teskcore::threads::GetDefaultEventLoop(); }
  /// Selects, and takes in what that announces.
  void Select(const MixTypeClipModels& clips) {
    session->Select(clips);
    Loop().Drain();
  }
  OrvelModel::SectionModels Sections() {
    OrvelModel::SectionModels sections;
    model->GetSectionModels(sections);
    return sections;
  }
  boost::intrusive_ptr<SectionModelInterface> Section(const std::string& modelID) {
    boost::intrusive_ptr<SectionModelInterface> section;
    model->GetSectionModel(modelID, section);
    return section;
  }

  boost::intrusive_ptr<FakeSession> session{new FakeSession};
  boost::intrusive_ptr<FakeExecutor> stack{new FakeExecutor};
  boost::intrusive_ptr<FakeClip> a{new FakeClip("a")};
  boost::intrusive_ptr<FakeClip> b{new FakeClip("b")};
  boost::intrusive_ptr<OrvelModel> model;
  /// May change what was made for the model, or throw.
  std::function<void(boost::intrusive_ptr<SectionModelInterface>&, bool follows)> onMade;
};

}  // namespace orvel::test
