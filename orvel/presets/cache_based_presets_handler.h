#pragma once

#include <string>
#include <vector>

#include <boost/function.hpp>
#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/presets/config_preset_data.h"
#include "orvel/presets/presets_cache.h"
#include "orvel/presets/presets_handler_interface.h"
#include "orvel/presets/user_preset_data.h"

namespace orvel {

/// Why a name cannot be given to a new preset.
enum class PresetNameStatus {
  kUsable,        ///< it can
  kReserved,      ///< "Default"
  kTaken,         ///< a listed preset is stored or shown under it
  kNotAFileName,  ///< empty, not valid UTF-8, or that of the configuration's file
};

/// The handler over a cache of presets, instantiated for `UserPresetData` and `ConfigPresetData`
/// over `PresetsCache`. Main thread only.
template <typename T, typename Cache = PresetsCache>
class ORVEL_EXPORT CacheBasedPresetsHandler : public PresetsHandlerInterface<T> {
 public:
  /// A preset's guid and its name as it is stored.
  using PresetEntry = typename PresetsHandlerInterface<T>::PresetEntry;

  /// Whether a preset is listed.
  using Filter = boost::function<bool(const Preset<T>& preset)>;

  /// Replaces `data` by the values as they are now; false when they cannot be had.
  using Provider = boost::function<bool(T& data)>;

  /// Whether a preset may be selected now.
  using Verifier = boost::function<bool(const Preset<T>& preset)>;

  /// See `RegisterForStateChanges`.
  using StateSignal = boost::signals2::signal<void(), CallEverySlot>;

  /// See `RegisterForDataChanges`.
  using DataSignal = boost::signals2::signal<void(const T& previous), CallEverySlot>;

  /// Lists the presets of `cache` that `filter` accepts, all with an empty one. `provider` answers
  /// `RequestCurrentData`. With a null cache there are no presets, and none can be saved.
  explicit CacheBasedPresetsHandler(const boost::intrusive_ptr<Cache>& cache,
                                    const Filter& filter = Filter(),
                                    const Provider& provider = Provider());

  bool ShowsEditsAsCustom(const std::string& name) const override;
  PresetEntry GetCurrentPreset() const override;
  std::vector<PresetEntry> GetPresetList() const override;
  std::u16string GetDisplayName() const override;
  bool RequestCurrentData(T& data) override;
  bool SaveAsNew(const std::string& name) override;
  bool Select(const Guid& guid) override;
  bool Save(const Preset<T>& preset) override;
  bool Remove(const Guid& guid) override;

  /// The selected preset as the cache has it now; as it was selected, when the cache has it no
  /// more.
  Preset<T> GetSelectedPreset() const;

  /// Of the selected preset; null before the first selection.
  const Guid& GetSelectedGuid() const { return selected_.Guid; }

  /// The selected preset's data with the edits on it.
  const T& GetWorkingData() const { return working_; }

  /// Puts what a person edited in the place of the working data.
  void SetWorkingData(const T& data);

  /// Whether the working data differ from the selected preset's; a comparison, so that an edit that
  /// is taken back by hand leaves nothing behind.
  bool IsModified() const { return !(working_ == GetSelectedPreset().PresetData); }

  /// Drops the edits: the working data become those that are stored.
  void Revert();

  /// Selects a preset with working data of its own, without asking the verifier: what a document
  /// brought along. The preset need not be in the cache.
  void Restore(const Preset<T>& preset, const T& data);

  /// Selects the default entry, or nothing when there is none, without asking the verifier.
  void SelectDefault();

  /// The default entry of the list, else its first; false for an empty list.
  bool GetDefaultPreset(Preset<T>& preset) const;

  /// Whether a new preset can have this name; `guid` is that of a preset which may keep its own.
  PresetNameStatus CheckPresetName(const std::string& name, const Guid& guid = Guid()) const;

  /// Asked before a selection by `Select` takes effect; an empty function refuses none.
  void SetSelectionVerifier(const Verifier& verifier) { verifier_ = verifier; }

  /// Whether a `Save` or a `Remove` is under way, which will select by itself.
  bool IsChangingCache() const { return isChangingCache_; }

  /// The slot is called after every selection, save, removal and change of the working data, with
  /// the working data from before, and before the slots of `RegisterForStateChanges`.
  boost::signals2::connection RegisterForDataChanges(const typename DataSignal::slot_type& slot);

  /// The slot is called after every selection, save, removal and change of the working data.
  boost::signals2::connection RegisterForStateChanges(const typename StateSignal::slot_type& slot);

 private:
  bool Find(const Guid& guid, Preset<T>& preset) const;
  void SetState(const Preset<T>& selected, const T& data);

  boost::intrusive_ptr<Cache> cache_;
  Filter filter_;
  Provider provider_;
  Verifier verifier_;
  Preset<T> selected_;
  T working_;
  bool isChangingCache_ = false;
  DataSignal dataChanged_;
  StateSignal stateChanged_;
};

/// The handler of the configuration presets of a mode.
using ConfigPresetsHandler = CacheBasedPresetsHandler<ConfigPresetData, PresetsCache>;

/// The handler of the user presets of a mode's configuration.
using UserPresetsHandler = CacheBasedPresetsHandler<UserPresetData, PresetsCache>;

}  // namespace orvel
