#include "orvel/configuration/user_presets_handler.h"

#include "orvel/configuration/configuration_manager.h"

namespace orvel {

boost::intrusive_ptr<UserPresetsHandler> CreateUserPresetsHandler(
    const std::string& modeID, const UserPresetsHandler::Provider& provider) {
  const auto* manager = ConfigurationManager::Get();
  if (manager == nullptr) return nullptr;
  const auto belongs = [modeID](const Preset<UserPresetData>& preset) {
    const auto* current = ConfigurationManager::Get();
    return current != nullptr && preset.PresetData.ModeID == modeID &&
           preset.PresetData.Config == current->GetCurrentConfigGuidForMode(modeID);
  };
  return new UserPresetsHandler(manager->GetPresetsCache(), belongs, provider);
}

}  // namespace orvel
