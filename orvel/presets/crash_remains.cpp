#include "orvel/presets/crash_remains.h"

#include "orvel/core/file_utils.h"
#include "orvel/core/temp_name.h"
#include "orvel/core/text.h"
#include "orvel/presets/preset_file.h"
#include "orvel/presets/preset_folder.h"
#include "orvel/presets/temporary_mark.h"

namespace orvel {
using teskcore::filesupport::IsAbandonedTempName;

namespace {

// False when no renaming was cut short here.
bool FinishRenaming(const Dir& folder) {
  const File renamed(folder, kRenamedName);
  if (IsLink(renamed) || !renamed.Exists()) return false;
  Preset<ConfigPresetData> preset;
  const bool isMoved =
      ReadPresetFile(renamed, preset) &&
      FileUtils::IsNormalizedFrom(folder.Parent().GetName(), UTF8to16(preset.Name));
  return isMoved ? MovePresetPath(renamed.FullPath(), File(folder, kConfigFileName).FullPath())
                 : DeletePresetFile(renamed);
}

void ClearModeFolder(const Dir& folder) {
  bool isAny = FinishRenaming(folder);
  isAny |= ClearAbandonedTemporary(folder);
  ForEachFile(folder, IsAbandonedTempName,
              [&isAny](const File& file) { isAny |= DeletePresetFile(file); });
  if (isAny) DeleteModeFolder(folder);
}

}  // namespace

void ClearRemainsOfCrashes(const Dir& root) {
  ForEachSubfolder(root.Parent(), [](const Dir& folder) {
    if (IsAbandonedTempName(folder.GetName())) DeleteTree(folder);
  });
  ForEachSubfolder(root,
                   [](const Dir& nameFolder) { ForEachSubfolder(nameFolder, ClearModeFolder); });
}

}  // namespace orvel
