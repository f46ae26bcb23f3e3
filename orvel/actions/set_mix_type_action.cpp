#include "orvel/actions/set_mix_type_action.h"

#include <map>

#include "orvel/actions/action_types.h"
#include "orvel/actions/run_silently.h"
#include "orvel/actions/set_initial_params_action.h"
#include "orvel/actions/set_model_param_map_action.h"
#include "orvel/actions/set_user_preset_guid_action.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/configuration/user_presets_handler.h"
#include "orvel/core/profiler.h"
#include "orvel/core/usage_logger.h"
#include "orvel/models/clip_keys.h"
#include "orvel/models/orvel_model.h"
#include "orvel/models/section_model_utils.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {
namespace {

ProfileName clipRedoScope("SetClipMixTypeAction::RedoSelf");
ProfileName clipUndoScope("SetClipMixTypeAction::UndoSelf");
ProfileName redoScope("ChangeMixTypeAggregateAction::RedoSelf");
ProfileName undoScope("ChangeMixTypeAggregateAction::UndoSelf");
ProfileName clearScope("ChangeMixTypeAggregateAction::ClearModels");

std::string GetMode(const boost::intrusive_ptr<MixTypeClipModelInterface>& clip) {
  std::string modeID = kAdjustmentsModeUnknown;
  if (clip) clip->GetAdjustmentsMode(modeID);
  return modeID;
}

boost::intrusive_ptr<MultiAction> MakeGroup(const std::u16string& name) {
  const boost::intrusive_ptr<MultiAction> group(new MultiAction(name));
  group->SetActionType(kActionType_SetMixTypeModelParam);
  return group;
}

class SetClipMixTypeAction : public Action {
 public:
  SetClipMixTypeAction(const boost::intrusive_ptr<MixTypeClipModelInterface>& clip,
                       const std::string& modeID, const Guid& presetGuid,
                       const std::u16string& name)
      : Action(true, true, name),
        clip_(clip),
        newMode_(modeID),
        previousMode_(GetMode(clip)),
        newGuid_(presetGuid) {
    SetActionType(kActionType_SetMixTypeModelParam);
    clip_->GetUserPresetGuid(previousGuid_);
  }

 private:
  void RedoSelf() override {
    const ProfileScope scope(clipRedoScope);
    Apply(newMode_, newGuid_);
  }
  void UndoSelf() override {
    const ProfileScope scope(clipUndoScope);
    Apply(previousMode_, previousGuid_);
  }
  void Apply(const std::string& modeID, const Guid& presetGuid) const {
    clip_->SetAdjustmentsMode(modeID);
    clip_->SetUserPresetGuid(presetGuid);
  }

  boost::intrusive_ptr<MixTypeClipModelInterface> clip_;
  std::string newMode_;
  std::string previousMode_;
  Guid newGuid_;
  Guid previousGuid_;
};

class ChangeMixTypeAggregateAction : public Action {
 public:
  ChangeMixTypeAggregateAction(const boost::intrusive_ptr<OrvelModel>& model,
                               const std::string& modeID, const Preset<UserPresetData>& preset,
                               const std::u16string& name)
      : Action(true, true, name), model_(model), groups_(MakeGroup(name)) {
    SetActionType(kActionType_SetMixTypeModelParam);
    const auto clipMixTypes = MakeGroup(name);
    const auto initialParams = MakeGroup(name);
    const auto sectionDefaults = MakeGroup(name);
    const auto clipPresets = MakeGroup(name);
    // In the order of redo. A section of the mode that is left may hold its values in the same
    // place as one of the new mode, so defaults come before the preset's values.
    for (const auto& group : {sectionDefaults, clipMixTypes, initialParams, clipPresets}) {
      groups_->AddAction(group);
    }

    const MixTypeClipModels clips = model_->GetMixTypeClipModels();
    MixTypeClipModels changing;
    for (const auto& clip : clips) {
      if (GetMode(clip) == modeID) continue;
      changing.push_back(clip);
      clipMixTypes->AddAction(new SetClipMixTypeAction(clip, modeID, preset.Guid, name));
      clipPresets->AddAction(CreateSetUserPresetGuidAction(clip, preset.Guid, modeID, name));
    }
    if (!changing.empty()) {
      initialParams->AddAction(
          CreateSetInitialParamsAction(changing, modeID, preset.PresetData.Models, name));
    }
    const auto& reported = changing.empty() ? clips : changing;
    if (!reported.empty()) reportedClip_ = reported.front();

    OrvelModel::SectionModels sections;
    model_->GetSectionModels(sections);
    for (const auto& section : sections) {
      if (section->GetAdjustmentsMode() == modeID) continue;
      std::map<int, float> defaults;
      modelutils::GetDefaultModelParams(section, defaults);
      sectionDefaults->AddAction(CreateSetModelParamMapAction(section, defaults, name));
    }
  }

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    Run([this] { groups_->Redo(); });
    RecordUsage(false);
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    Run([this] { groups_->Undo(); });
    RecordUsage(true);
  }

  template <typename Step>
  void Run(Step step) {
    RunSilently(model_, [&] {
      {
        const ProfileScope scope(clearScope);
        model_->ClearSectionModels();
      }
      step();
    });
  }

  void RecordUsage(bool undo) const {
    ClipType type = type_not_set;
    if (reportedClip_) reportedClip_->GetClipType(type);
    UsageLogger::Get().Log({"orvel_set_adjustments_mode",
                            "Orvel",
                            "Orvel Mix Type",
                            {{"adjustments_mode", GetMode(reportedClip_)},
                             {"clip_type", std::string(GetClipTypeText(type))},
                             {"undo", undo}}});
  }

  boost::intrusive_ptr<OrvelModel> model_;
  boost::intrusive_ptr<MultiAction> groups_;
  boost::intrusive_ptr<MixTypeClipModelInterface>
      reportedClip_;  // the first that changes, else the first
};

}  // namespace

boost::intrusive_ptr<MultiAction> CreateSetMixTypeAction(
    const boost::intrusive_ptr<OrvelModel>& model, const std::string& modeID,
    const Preset<UserPresetData>& preset, const std::u16string& name) {
  const auto action = MakeGroup(name);
  if (model) action->AddAction(new ChangeMixTypeAggregateAction(model, modeID, preset, name));
  return action;
}

boost::intrusive_ptr<MultiAction> CreateSetMixTypeWithDefaultPresetAction(
    const boost::intrusive_ptr<OrvelModel>& model, const std::string& modeID,
    const std::u16string& name) {
  const auto action = MakeGroup(name);
  if (!model || modeID == kAdjustmentsModeUnknown) return action;
  if (const auto handler = CreateUserPresetsHandler(modeID)) {
    Preset<UserPresetData> preset;  // a mode without presets: no guid, and defaults everywhere
    handler->GetDefaultPreset(preset);
    action->AddAction(CreateSetMixTypeAction(model, modeID, preset, name));
  }
  return action;
}

}  // namespace orvel
