#include "orvel/actions/section_action.h"

#include "orvel/actions/action_types.h"
#include "orvel/actions/suspend_signaling_action.h"
#include "orvel/models/section_multi_model.h"

namespace orvel {
namespace {

class EditableMultiAction : public MultiAction {
 public:
  EditableMultiAction(const boost::intrusive_ptr<SectionMultiModel>& model,
                      const std::u16string& name, bool silent, const SectionActionMaker& make)
      : MultiAction(name) {
    if (silent) AddAction(CreateSuspendSignalingAction(model, true, name));
    for (const auto& member : model->GetModels()) {
      AddAction(CreateSectionAction(member, name, silent, make));
    }
    if (silent) AddAction(CreateSuspendSignalingAction(model, false, name));
  }
};

}  // namespace

boost::intrusive_ptr<Action> CreateSectionAction(
    const boost::intrusive_ptr<SectionModelInterface>& model, const std::u16string& name,
    bool silent, const SectionActionMaker& make) {
  boost::intrusive_ptr<Action> action;
  if (auto* multi = dynamic_cast<SectionMultiModel*>(model.get())) {
    action = new EditableMultiAction(multi, name, silent, make);
  } else {
    action = make(model);
  }
  action->SetActionType(kActionType_SetSectionModelParam);
  return action;
}

}  // namespace orvel
