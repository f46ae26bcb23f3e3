#include "orvel/presets/config_preset_data.h"

namespace orvel {

const Guid ConfigPresetData::kType("1c19ca71-c24c-49cd-8dd5-2cc46018507a");

}  // namespace orvel
