#pragma once

#include <string>
#include <utility>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/core/guid.h"
#include "orvel/core/ref_counted.h"
#include "orvel/presets/preset.h"

namespace orvel {

/// What a preset menu talks to: the presets of one kind that apply, the selected one and its state.
/// Names are as they are stored, and shown through `ZString`.
template <typename T>
class ORVEL_EXPORT PresetsHandlerInterface : public virtual RefCountedObject {
 public:
  /// A preset's guid and its name as it is stored.
  using PresetEntry = std::pair<Guid, std::string>;

  /// Whether edits of the preset of this name are shown as "(Custom)": it is not one to overwrite.
  virtual bool ShowsEditsAsCustom(const std::string& name) const = 0;

  /// The null guid and no name before the first selection.
  virtual PresetEntry GetCurrentPreset() const = 0;

  /// The presets that apply, sorted by the shown name, the default entry first.
  virtual std::vector<PresetEntry> GetPresetList() const = 0;

  /// The text to show for the current state.
  virtual std::u16string GetDisplayName() const = 0;

  /// Asks the owner of the values for them as they are now, and gives its answer. Raises
  /// `boost::bad_function_call` for a handler that was made without such an owner.
  virtual bool RequestCurrentData(T& data) = 0;

  /// Saves the working data as a new preset and selects it; false when the name is refused or
  /// nothing can be saved.
  virtual bool SaveAsNew(const std::string& name) = 0;

  /// False, with everything as it was, for an unknown guid, or when the selection is refused.
  virtual bool Select(const Guid& guid) = 0;

  /// Saves a preset and selects it; one of the same guid is overwritten. False, with everything as
  /// it was, when the name is refused or it cannot be saved.
  virtual bool Save(const Preset<T>& preset) = 0;

  /// Removes a preset and selects the default entry. False, with the selection as it was, when it
  /// cannot be removed.
  virtual bool Remove(const Guid& guid) = 0;
};

}  // namespace orvel
