#include "orvel/actions/set_model_param_action.h"

#include "orvel/actions/retargetable_action.h"
#include "orvel/actions/section_action.h"
#include "orvel/core/profiler.h"

namespace orvel {
namespace {

ProfileName redoScope("SetSectionModelParamAction::RedoSelf");
ProfileName undoScope("SetSectionModelParamAction::UndoSelf");

class SetSectionModelParamAction : public RetargetableAction {
 public:
  SetSectionModelParamAction(const boost::intrusive_ptr<SectionModelInterface>& model, int paramID,
                             float value, const std::u16string& name)
      : RetargetableAction(true, true, name), model_(model), paramID_(paramID), newValue_(value) {
    if (model_) model_->GetParamNormalized(paramID_, previousValue_);
  }

  void Retarget(float value) override { newValue_ = value; }

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    if (model_) model_->SetParamNormalized(paramID_, newValue_);
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    if (model_) model_->SetParamNormalized(paramID_, previousValue_);
  }

  boost::intrusive_ptr<SectionModelInterface> model_;
  int paramID_;
  float newValue_;
  float previousValue_ = 0.0f;
};

}  // namespace

boost::intrusive_ptr<Action> CreateSetModelParamAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const int& paramID, float normalized,
    const std::u16string& name) {
  return CreateSectionAction(model, name, true, [&](const auto& clip) {
    return boost::intrusive_ptr<Action>(
        new SetSectionModelParamAction(clip, paramID, normalized, name));
  });
}

void ChangeActionParamValue(const boost::intrusive_ptr<Action>& action, float value) {
  if (const auto* compound = dynamic_cast<const MultiAction*>(action.get())) {
    for (const auto& child : *compound) ChangeActionParamValue(child, value);
  } else if (auto* single = dynamic_cast<RetargetableAction*>(action.get())) {
    single->Retarget(value);
  }
}

}  // namespace orvel
