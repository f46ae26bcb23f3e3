#include "orvel/presets/user_presets_group.h"

namespace orvel {

UserPresetsGroup::UserPresetsGroup(const Guid& config, const std::string& modeID, const Dir& folder)
    : presets_(folder, [config, modeID](Preset<UserPresetData>& preset) {
        UserPresetData& data = preset.PresetData;
        const bool isForeign = data.Config != config || data.ModeID != modeID;
        data.Config = config;
        data.ModeID = modeID;
        return isForeign;
      }) {
  presets_.Load();
}

}  // namespace orvel
