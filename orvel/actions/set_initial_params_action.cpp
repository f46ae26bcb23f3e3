#include "orvel/actions/set_initial_params_action.h"

#include "orvel/actions/action_types.h"
#include "orvel/actions/set_model_param_map_action.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/profiler.h"
#include "orvel/definitions/lifecycle.h"
#include "orvel/models/mix_type_clip_model_interface.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "orvel/models/section_model_utils.h"

namespace orvel {
namespace {

ProfileName redoScope("SetInitialSectionModelDefaultParamsAction::RedoSelf");
ProfileName undoScope("SetInitialSectionModelDefaultParamsAction::UndoSelf");
ProfileName doScope("SetInitialSectionModelDefaultParamsAction::DoAction");

class SetInitialSectionModelDefaultParamsAction : public Action {
 public:
  SetInitialSectionModelDefaultParamsAction(const MixTypeClipModels& clips,
                                            const std::string& modeID, const SectionLists& lists,
                                            const std::u16string& name)
      : Action(true, true, name), clips_(clips), modeID_(modeID), lists_(lists) {
    SetActionType(kActionType_SetMixTypeModelParam);
  }

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    DoAction();
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    if (writes_) writes_->Undo();
  }

  void DoAction() {
    const ProfileScope scope(doScope);
    writes_ = new MultiAction(GetActionString());
    std::vector<SectionDescriptor> sections;
    if (const auto* modes = ModeDescriptorCache::Get()) {
      modes->GetSectionDescriptors(modeID_, sections);
    }
    for (const auto& section : sections) {
      const PropList configuration = GetModelConfiguration(modeID_, section.modelID);
      for (const auto& clip : clips_) {
        std::string modeID;  // a clip that refused the mode has other sections
        clip->GetAdjustmentsMode(modeID);
        if (modeID == modeID_) AddWrite(section.modelID, configuration, clip);
      }
    }
    writes_->Redo();
  }

  void AddWrite(const std::string& modelID, const PropList& configuration,
                const boost::intrusive_ptr<MixTypeClipModelInterface>& clip) {
    boost::intrusive_ptr<SectionModelInterface> model;
    factory::CreateModelForClips(modelID, modeID_, configuration, factory::GetSessionHandler(),
                                 {clip}, false, model);
    if (!model) return;
    std::map<int, float> values;
    std::map<int, float> defaults;
    const auto listed = lists_.find(modelID);
    // A list that cannot be converted is as good as none.
    if (listed != lists_.end() && !modelutils::GetParamIdValueMap(model, listed->second, values)) {
      values.clear();
    }
    modelutils::GetDefaultModelParams(model, defaults);
    values.merge(defaults);
    writes_->AddAction(CreateSetModelParamMapAction(model, values, GetActionString()));
  }

  MixTypeClipModels clips_;
  std::string modeID_;
  SectionLists lists_;
  boost::intrusive_ptr<MultiAction> writes_;  // of the last redo
};

}  // namespace

boost::intrusive_ptr<Action> CreateSetInitialParamsAction(const MixTypeClipModels& clips,
                                                          const std::string& modeID,
                                                          const SectionLists& lists,
                                                          const std::u16string& name) {
  return new SetInitialSectionModelDefaultParamsAction(clips, modeID, lists, name);
}

}  // namespace orvel
