#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include <boost/function.hpp>
#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/dir.h"
#include "orvel/core/export.h"
#include "orvel/core/file.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/guid.h"
#include "orvel/core/module_resources.h"
#include "orvel/core/ref_counted.h"
#include "orvel/presets/config_entry.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/preset.h"
#include "orvel/presets/user_preset_data.h"
#include "orvel/presets/user_presets_group.h"

namespace orvel {

/// Every configuration preset and user preset, in memory and in the preset folder alike; the only
/// writer of that folder. Main thread only.
///
/// Below "Presets" / "Orvel" in the preferences folder stand: a folder for each name of a
/// configuration preset ("Default" for the factory's), in it a folder for each adjustments mode,
/// and in that the configuration preset's file and those of the user presets made under it.
///
/// A link below "Orvel" is none of the store's: it is passed over, never written through, and what
/// it leads to stays as it is; "Orvel" itself and the folders above it may be links. A file is
/// written in the place of a link of its name. Each file is written whole or not at all. A preset
/// that becomes a copy or cannot be written is traced on the channel "app.Presets" at level 2, with
/// the file's path; the cause, and all else that goes wrong, at level 3. Nothing here throws but
/// for want of memory and out of the functions that a host installs.
class ORVEL_EXPORT PresetsCache : public RefCountedObject {
 public:
  /// Fits a user preset to the configuration that its `Config` names; false when it cannot.
  using MigrateUserPresetFunction = boost::function<bool(Preset<UserPresetData>& preset)>;

  /// (the configuration preset that was saved or removed; the same when it was saved, else the one
  /// that took its place, or null)
  using ConfigPresetSignal =
      boost::signals2::signal<void(const Guid& preset, const Guid& successor), CallEverySlot>;

  /// The factory presets are resources of `module`. With `usesFolder` the "Default" folder is made
  /// of them when there is none, what a crash left behind is cleared away, and the folder is
  /// loaded. Without it nothing is loaded and nothing can be saved.
  PresetsCache(ModuleHandle module, bool usesFolder);

  /// Replaces what is in memory by what stands in the folder. Files that cannot be read stay as
  /// they are and hide no others. The folders' names are the authority: a configuration preset
  /// takes its name and mode from them, also on disk, save that those in "Default" keep their name;
  /// the second of two with one guid gets a guid of its own. What is not seen any more counts as
  /// unseen, not as removed: its folder may only be away for a moment.
  void Reload();

  /// Forgets the presets and saves none any more: whoever still holds this, or a handler over it,
  /// does not write where another store may be at work by then.
  void Close();

  /// Copies the preset of this guid; false, with `preset` as it was, when there is none.
  /// @{
  bool FindPreset(const Guid& guid, Preset<ConfigPresetData>& preset) const;
  bool FindPreset(const Guid& guid, Preset<UserPresetData>& preset) const;
  /// @}

  /// Visits the presets in the order of `GetPresets`; `visit` answers whether to go on.
  /// @{
  void ForEachPreset(const boost::function<bool(const Preset<ConfigPresetData>&)>& visit) const;
  void ForEachPreset(const boost::function<bool(const Preset<UserPresetData>&)>& visit) const;
  /// @}

  /// Replaces `presets` by all of them: configuration presets by the names of their folders, the
  /// factory's last; user presets in the same order, each configuration's by their file names.
  /// @{
  void GetPresets(std::vector<Preset<ConfigPresetData>>& presets) const;
  void GetPresets(std::vector<Preset<UserPresetData>>& presets) const;
  /// @}

  /// Saves a user preset among those of its `Config`; one of the same name there, or of the same
  /// guid, is replaced. False when that configuration is unknown or the file cannot be written;
  /// memory and disk are then as they were.
  bool SavePreset(const Preset<UserPresetData>& preset);

  /// Saves a configuration preset: one that is known in its own place, under a new name after its
  /// folder got that name; one that is unknown as `CreateConfigPreset` does. A temporary one that
  /// gets another name is a person's own from then on. False for the factory's under another name,
  /// for another mode, and for what `CreateConfigPreset` refuses.
  bool SavePreset(const Preset<ConfigPresetData>& preset);

  /// Makes the folder of a new configuration preset and files it before the factory's. When the
  /// mode's current configuration is a temporary one, the new one takes its place, user presets
  /// included. False for a name that is reserved, taken in this mode or no file name, and when it
  /// cannot be written. Reports the usage event "orvel_save_master_preset".
  bool CreateConfigPreset(const Preset<ConfigPresetData>& preset);

  /// Deletes a configuration preset with its user presets. Files that are not its own stay, and
  /// their folder with them. False when it is unknown or something could not be deleted; it is gone
  /// from memory when its file is gone.
  bool RemoveConfigPreset(const Guid& guid);

  /// Deletes the first user preset with this guid. False when there is none or its file stays.
  bool RemovePreset(const Guid& guid);

  /// The same for the one that was made under the configuration `config`.
  bool RemovePreset(const Guid& guid, const Guid& config);

  /// Creates a configuration preset that lives until it is removed or the next one is created in
  /// its place: the template that a document brought along. A taken name gets a number. True also
  /// for one that is temporary already.
  bool AddTemporaryPreset(const Preset<ConfigPresetData>& preset);

  /// Removes a temporary preset with its folder. User presets that somebody saved under it move to
  /// the factory's of the mode, where a taken name gets a number. When they cannot, or it cannot be
  /// deleted, it stays as an ordinary one. True also for a guid that is not temporary, which stays.
  bool RemoveTemporaryPreset(const Guid& guid);

  /// Removes all temporary presets in this way.
  void RemoveTemporaryPresets();

  /// Whether the preset is here as a temporary one.
  bool IsTemporaryPreset(const Guid& guid) const { return temporaries_.contains(guid); }

  /// Replaces `presets` by those of a configuration; none for an unknown one.
  void GetUserPresetsForConfig(const Guid& config,
                               std::vector<Preset<UserPresetData>>& presets) const;

  /// Null for an unknown configuration. A group that is held keeps what it had when `Reload`, or a
  /// new name of the configuration, makes new ones.
  boost::intrusive_ptr<UserPresetsGroup> GetUserPresetsGroupForGuid(const Guid& config) const;

  /// Whether no configuration preset may bear this name: true for "Default".
  static bool IsReservedPresetName(const std::string& name);

  /// Whether this is the name, as it is stored, of a factory preset of either kind.
  bool IsFactoryPresetName(const std::string& name) const;

  /// The factory's configuration preset of a mode; false when there is none.
  bool GetFactoryConfigPreset(const std::string& modeID, Preset<ConfigPresetData>& preset) const;

  /// Copies the user presets of one configuration to another, each after the migration function has
  /// fitted it to the target; one of the same name there is replaced. With `copy` each gets a guid
  /// of its own, and is kept also when it cannot be fitted. False when a configuration is unknown
  /// or a preset cannot be saved. Nothing is done when both are the same.
  bool MigrateUserPresets(const Guid& from, const Guid& to, bool copy);

  /// Replaces the function; an empty one fits nothing and refuses nothing.
  void SetMigrateUserPresetFunction(const MigrateUserPresetFunction& function);

  /// While that function runs, the configuration that the presets come from; null otherwise.
  const Guid& GetMigrationSource() const { return migrationSource_; }

  /// The slot is called after a configuration preset was saved or removed.
  boost::signals2::connection RegisterForConfigPresetChanges(
      const ConfigPresetSignal::slot_type& slot);

 private:
  const ConfigEntry* Find(const Guid& guid) const;
  ConfigEntry* Find(const Guid& guid);
  bool MakeFolderTitle(const std::string& name, std::u16string& title) const;
  bool IsNameTaken(const std::string& name, const std::string& modeID) const;
  bool Create(const Preset<ConfigPresetData>& preset, const std::u16string& title,
              bool isTemporary);
  void MakeOrdinary(const Guid& guid);
  bool RescueUserPresets(const Guid& guid);
  bool Rename(ConfigEntry& entry, const Preset<ConfigPresetData>& preset);
  bool Remove(Guid guid, Guid successor);  // copies: they may come from what it removes

  ModuleHandle module_;
  bool usesFolder_;
  Dir root_;
  ConfigEntries entries_;
  std::set<Guid> temporaries_;
  mutable std::optional<std::set<std::string>> factoryNames_;  // read when they are asked for
  MigrateUserPresetFunction migrate_;
  Guid migrationSource_;
  ConfigPresetSignal configPresetChanged_;
};

}  // namespace orvel
