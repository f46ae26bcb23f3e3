#include "orvel/presets/presets_base_dir.h"

namespace orvel {

std::u16string GetPresetsBaseDirName() { return u"Presets"; }

Dir GetPresetsBaseDir() { return {Dir::PrefDir(), GetPresetsBaseDirName()}; }

}  // namespace orvel
