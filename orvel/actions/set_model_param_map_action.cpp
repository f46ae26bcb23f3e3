#include "orvel/actions/set_model_param_map_action.h"

#include "orvel/actions/section_action.h"
#include "orvel/core/profiler.h"

namespace orvel {
namespace {

ProfileName redoScope("SetSectionModelParamMapAction::RedoSelf");
ProfileName undoScope("SetSectionModelParamMapAction::UndoSelf");

class SetSectionModelParamMapAction : public Action {
 public:
  SetSectionModelParamMapAction(const boost::intrusive_ptr<SectionModelInterface>& model,
                                const std::map<int, float>& values, const std::u16string& name)
      : Action(true, true, name), model_(model), newValues_(values) {
    if (!model_) return;
    for (const auto& [paramID, value] : newValues_) {
      model_->GetParamNormalized(paramID, previousValues_[paramID]);
    }
  }

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    if (model_) model_->SetParamsNormalized(newValues_);
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    if (model_) model_->SetParamsNormalized(previousValues_);
  }

  boost::intrusive_ptr<SectionModelInterface> model_;
  std::map<int, float> newValues_;
  std::map<int, float> previousValues_;
};

}  // namespace

boost::intrusive_ptr<Action> CreateSetModelParamMapAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const std::map<int, float>& values,
    const std::u16string& name) {
  return CreateSectionAction(model, name, false, [&](const auto& clip) {
    return boost::intrusive_ptr<Action>(new SetSectionModelParamMapAction(clip, values, name));
  });
}

}  // namespace orvel
