#include "orvel/actions/suspend_signaling_action.h"

#include "orvel/core/profiler.h"
#include "orvel/models/section_model_interface.h"

namespace orvel {
namespace {

ProfileName redoScope("SuspendSignalingAction::RedoSelf");
ProfileName undoScope("SuspendSignalingAction::UndoSelf");

class SuspendSignalingAction : public Action {
 public:
  SuspendSignalingAction(const boost::intrusive_ptr<SectionModelInterface>& model, bool suspend,
                         const std::u16string& name)
      : Action(true, true, name), model_(model), suspend_(suspend) {}

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    Apply(suspend_);
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    Apply(!suspend_);
  }
  void Apply(bool suspend) const {
    if (!model_) return;
    if (!suspend) return model_->ResumeSignaling(true);
    try {
      model_->SuspendSignaling();
    } catch (...) {
      // A step that fails is not taken back, but the model of several clips has counted it.
      model_->ResumeSignaling(false);
      throw;
    }
  }

  boost::intrusive_ptr<SectionModelInterface> model_;
  bool suspend_;
};

}  // namespace

boost::intrusive_ptr<Action> CreateSuspendSignalingAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, bool suspend,
    const std::u16string& name) {
  return new SuspendSignalingAction(model, suspend, name);
}

}  // namespace orvel
