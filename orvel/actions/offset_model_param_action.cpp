#include "orvel/actions/offset_model_param_action.h"

#include <algorithm>
#include <cmath>

#include "orvel/actions/retargetable_action.h"
#include "orvel/actions/section_action.h"
#include "orvel/core/profiler.h"

namespace orvel {
namespace {

ProfileName redoScope("OffsetSectionModelParamAction::RedoSelf");
ProfileName undoScope("OffsetSectionModelParamAction::UndoSelf");

class OffsetSectionModelParamAction : public RetargetableAction {
 public:
  OffsetSectionModelParamAction(const boost::intrusive_ptr<SectionModelInterface>& model,
                                int paramID, float offset, const std::u16string& name)
      : RetargetableAction(true, true, name), paramID_(paramID) {
    SetOffset(offset);
    if (!model) return;
    const int status = model->GetParamNormalized(paramID_, firstValue_);
    if (status == kStatus_Success || status == kStatus_Tolerated) model_ = model;
  }

  void Retarget(float offset) override { SetOffset(offset); }

 private:
  void SetOffset(float offset) {
    if (std::isfinite(offset)) offset_ = offset;
  }
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    if (model_) {
      model_->SetParamNormalized(paramID_, std::clamp(firstValue_ + offset_, 0.0f, 1.0f));
    }
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    if (model_) model_->SetParamNormalized(paramID_, firstValue_);
  }

  boost::intrusive_ptr<SectionModelInterface> model_;  // null when its value is not known
  int paramID_;
  float offset_ = 0.0f;
  float firstValue_ = 0.0f;
};

}  // namespace

boost::intrusive_ptr<Action> CreateOffsetModelParamAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const int& paramID, float offset,
    const std::u16string& name) {
  return CreateSectionAction(model, name, true, [&](const auto& clip) {
    return boost::intrusive_ptr<Action>(
        new OffsetSectionModelParamAction(clip, paramID, offset, name));
  });
}

}  // namespace orvel
