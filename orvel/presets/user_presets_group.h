#pragma once

#include <string>

#include "orvel/core/dir.h"
#include "orvel/core/export.h"
#include "orvel/core/guid.h"
#include "orvel/core/ref_counted.h"
#include "orvel/presets/dir_based_presets_cache.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {

/// The user presets that were made under one configuration preset: those in its mode folder. The
/// presets cache saves and removes them; others read.
class ORVEL_EXPORT UserPresetsGroup : public RefCountedObject {
 public:
  /// Loads the folder. A preset in it that names another configuration or mode is corrected, also
  /// on disk: it was moved or copied there.
  UserPresetsGroup(const Guid& config, const std::string& modeID, const Dir& folder);

  /// What stands in the folder.
  const DirBasedPresetsCache<UserPresetData>& GetPresets() const { return presets_; }

 private:
  friend class PresetsCache;

  DirBasedPresetsCache<UserPresetData> presets_;
};

}  // namespace orvel
