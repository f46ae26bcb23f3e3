#include "orvel/actions/set_user_preset_guid_action.h"

#include "orvel/actions/action_types.h"
#include "orvel/core/profiler.h"
#include "orvel/core/usage_logger.h"

namespace orvel {
namespace {

ProfileName redoScope("SetUserPresetGuidAction::RedoSelf");
ProfileName undoScope("SetUserPresetGuidAction::UndoSelf");

class SetUserPresetGuidAction : public Action {
 public:
  SetUserPresetGuidAction(const boost::intrusive_ptr<MixTypeClipModelInterface>& clip,
                          const Guid& presetGuid, const std::string& modeID,
                          const std::u16string& name)
      : Action(true, true, name), clip_(clip), presetGuid_(presetGuid), modeID_(modeID) {
    SetActionType(kActionType_SetMixTypeModelParam);
    clip_->GetUserPresetGuid(previousGuid_);
  }

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    Apply(presetGuid_, false);
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    Apply(previousGuid_, true);
  }
  void Apply(const Guid& guid, bool undo) const {
    clip_->SetUserPresetGuid(guid);
    UsageLogger::Get().Log({"orvel_set_user_preset",
                            "Orvel",
                            "Orvel Preset",
                            {{"adjustments_mode", modeID_},
                             {"preset_guid", presetGuid_.AsUTF8String()},
                             {"undo", undo}}});
  }

  boost::intrusive_ptr<MixTypeClipModelInterface> clip_;
  Guid presetGuid_;
  Guid previousGuid_;
  std::string modeID_;
};

}  // namespace

boost::intrusive_ptr<Action> CreateSetUserPresetGuidAction(
    const boost::intrusive_ptr<MixTypeClipModelInterface>& clip, const Guid& presetGuid,
    const std::string& modeID, const std::u16string& name) {
  return new SetUserPresetGuidAction(clip, presetGuid, modeID, name);
}

}  // namespace orvel
