#include "orvel/actions/set_model_configuration_action.h"

#include "orvel/actions/action_types.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/profiler.h"

namespace orvel {
namespace {

ProfileName redoScope("SetSectionModelConfigurationAction::RedoSelf");
ProfileName undoScope("SetSectionModelConfigurationAction::UndoSelf");

class SetSectionModelConfigurationAction : public Action {
 public:
  SetSectionModelConfigurationAction(const std::string& modeID, const std::string& modelID,
                                     const PropList& configuration, const std::u16string& name)
      : Action(true, true, name),
        modeID_(modeID),
        modelID_(modelID),
        newConfiguration_(configuration) {
    SetActionType(kActionType_SetMixTypeModelParam);
    if (ConfigurationManager* manager = ConfigurationManager::Get()) {
      manager->GetModelConfiguration(modeID_, modelID_, previousConfiguration_);
      isBound_ = true;
    }
  }

 private:
  void RedoSelf() override {
    const ProfileScope scope(redoScope);
    Apply(newConfiguration_);
  }
  void UndoSelf() override {
    const ProfileScope scope(undoScope);
    Apply(previousConfiguration_);
  }
  void Apply(const PropList& configuration) const {
    ConfigurationManager* manager = ConfigurationManager::Get();
    if (manager != nullptr && isBound_) {
      manager->SetModelConfiguration(modeID_, modelID_, configuration);
    }
  }

  std::string modeID_;
  std::string modelID_;
  PropList newConfiguration_;
  PropList previousConfiguration_;
  bool isBound_ = false;  // whether there was a manager to ask for the configuration
};

}  // namespace

boost::intrusive_ptr<Action> CreateSetModelConfigurationAction(const std::string& modeID,
                                                               const std::string& modelID,
                                                               const PropList& configuration,
                                                               const std::u16string& name) {
  return new SetSectionModelConfigurationAction(modeID, modelID, configuration, name);
}

}  // namespace orvel
