#include "orvel/models/user_preset_utils.h"

#include <string>

#include "orvel/configuration/configuration_manager.h"
#include "orvel/models/clip_keys.h"
#include "orvel/models/section_model_utils.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel::modelutils {

int GetUserPresetData(const std::vector<boost::intrusive_ptr<SectionModelInterface>>& sectionModels,
                      UserPresetData& data) {
  if (sectionModels.empty()) return kStatus_Success;
  data.ModeID = sectionModels.front()->GetAdjustmentsMode();
  const auto* manager = ConfigurationManager::Get();
  if (manager != nullptr && data.ModeID != kAdjustmentsModeUnknown) {
    data.Config = manager->GetCurrentConfigGuidForMode(data.ModeID);
  }
  data.Models.clear();
  for (const auto& model : sectionModels) {
    const std::string name = model->GetName();
    if (name.empty()) continue;
    std::vector<float> values;
    if (!GetParamList(model, values)) return kStatus_ValuesDiffer;
    data.Models[name] = values;
  }
  return kStatus_Success;
}

}  // namespace orvel::modelutils
