#include "orvel/actions/set_user_preset_action.h"

#include <map>

#include "orvel/actions/action_types.h"
#include "orvel/actions/run_silently.h"
#include "orvel/actions/set_model_param_map_action.h"
#include "orvel/actions/set_user_preset_guid_action.h"
#include "orvel/core/profiler.h"
#include "orvel/models/orvel_model.h"
#include "orvel/models/section_model_utils.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {
namespace {

ProfileName redoScope("SetUserPresetAggregateAction::RedoSelf");
ProfileName undoScope("SetUserPresetAggregateAction::UndoSelf");

class SetUserPresetAggregateAction : public Action {
 public:
  SetUserPresetAggregateAction(const boost::intrusive_ptr<OrvelModel>& model,
                               const Preset<UserPresetData>& preset, const std::u16string& name)
      : Action(true, true, name), model_(model), steps_(new MultiAction(name)) {
    SetActionType(kActionType_SetMixTypeModelParam);
    steps_->SetActionType(kActionType_SetMixTypeModelParam);
    if (!model_) return;
    OrvelModel::SectionModels sections;
    model_->GetSectionModels(sections);
    for (const auto& section : sections) AddValues(section, preset.PresetData.Models);
    for (const auto& clip : model_->GetMixTypeClipModels()) {
      steps_->AddAction(
          CreateSetUserPresetGuidAction(clip, preset.Guid, preset.PresetData.ModeID, name));
    }
  }

 private:
  void AddValues(const boost::intrusive_ptr<SectionModelInterface>& section,
                 const std::map<std::string, std::vector<float>>& lists) {
    const auto listed = lists.find(section->GetName());
    std::map<int, float> values;
    if (listed == lists.end() || !modelutils::GetParamIdValueMap(section, listed->second, values)) {
      return;
    }
    steps_->AddAction(CreateSetModelParamMapAction(section, values, GetActionString()));
  }

  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    if (model_) RunSilently(model_, [this] { steps_->Redo(); });
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    if (model_) RunSilently(model_, [this] { steps_->Undo(); });
  }

  boost::intrusive_ptr<OrvelModel> model_;
  boost::intrusive_ptr<MultiAction> steps_;
};

}  // namespace

boost::intrusive_ptr<Action> CreateSetUserPresetAction(
    const boost::intrusive_ptr<OrvelModel>& model, const Preset<UserPresetData>& preset,
    const std::u16string& name) {
  return new SetUserPresetAggregateAction(model, preset, name);
}

}  // namespace orvel
