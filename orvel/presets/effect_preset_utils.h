#pragma once

#include <cstddef>
#include <list>
#include <set>
#include <string>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/prop_list.h"
#include "orvel/core/ref_counted.h"

namespace orvel::presetutils {

/// The way to the presets of the host's effects. As it is, it asks the registered effect factory
/// (`teskaudiofilterhost::utility::CreateAudioFilter`); a host that keeps its effects' presets
/// somewhere else overrides it.
class ORVEL_EXPORT PresetManager : public virtual RefCountedObject {
 public:
  /// Replaces `names` by those of the effect's presets; an unknown effect leaves them as they were.
  virtual void GetPresetNames(const std::u16string& componentID, std::set<std::u16string>& names);

  /// Replaces `values` by the preset's parameter values, in the effect's parameter order; false,
  /// with `values` as it was, when there is no such effect or preset.
  virtual bool GetPreset(const std::u16string& componentID, const std::u16string& name,
                         std::list<float>& values);
};

/// Installs the manager that the functions below use, in the place of an earlier one; null brings
/// back the library's own.
ORVEL_EXPORT void RegisterPresetManager(const boost::intrusive_ptr<PresetManager>& manager);

/// Replaces `names` by those of the effect's presets; an unknown effect leaves them as they were.
ORVEL_EXPORT void GetConfigPresetNames(const std::u16string& componentID,
                                       std::set<std::u16string>& names);

/// Reads one of them; false, with `values` as it was, when there is none.
ORVEL_EXPORT bool GetConfigPreset(const std::u16string& componentID, const std::u16string& name,
                                  std::list<float>& values);

/// The tables of named settings in a section's configuration: `tableKey` holds a child list, whose
/// keys are the settings' names.

/// Stores a setting, making the table when there is none and replacing a setting of the same name.
ORVEL_EXPORT void AddPresetToConfiguration(PropList& configuration, const std::string& tableKey,
                                           const std::list<float>& values, const std::string& name);

/// Stores every preset of an effect. The table is there afterwards, also when there is none.
ORVEL_EXPORT void AddAllEffectPresets(PropList& configuration, const std::string& tableKey,
                                      const std::u16string& componentID);

/// Reads a setting; false, with `values` as it was, when the table or the setting is missing.
ORVEL_EXPORT bool GetPresetFromConfiguration(const PropList& configuration,
                                             const std::string& tableKey, const std::string& name,
                                             std::list<float>& values);

/// Removes a setting; a missing one is no error.
ORVEL_EXPORT void RemovePresetFromConfiguration(PropList& configuration,
                                                const std::string& tableKey,
                                                const std::string& name);

/// Stores the name of the first preset of the effect whose values all are those given, to 0.001,
/// and as many; else "Custom" in quotation marks, and gives false.
ORVEL_EXPORT bool GetPresetNameForConfig(const std::u16string& componentID,
                                         const std::list<float>& values, std::u16string& name);

/// Lets a user preset that chooses an entry of a table choose the entry of the same name in the
/// table of another configuration. `values[valueIndex]` is the entry's place in the table's order,
/// counted from 0; it is rounded, and clamped to the table. False, with `values` as it was, when
/// there is no such value or the new table has no entry of that name.
ORVEL_EXPORT bool MigratePresetControlBasedPreset(const PropList& oldConfiguration,
                                                  const PropList& newConfiguration,
                                                  const std::string& tableKey,
                                                  std::size_t valueIndex,
                                                  std::vector<float>& values);

}  // namespace orvel::presetutils

namespace orvel {
using presetutils::PresetManager;
}  // namespace orvel
