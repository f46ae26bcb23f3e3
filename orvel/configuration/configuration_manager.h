#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include <boost/function.hpp>
#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/action.h"
#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/guid.h"
#include "orvel/core/prop_list.h"
#include "orvel/models/session_handler_interface.h"
#include "orvel/presets/cache_based_presets_handler.h"
#include "orvel/presets/presets_cache.h"

namespace orvel {

/// The name under which a host keeps a document's configuration presets: the text of
/// `WritePresets`.
extern ORVEL_EXPORT const std::string kSessionPropertyKey_Configurations;

/// Which configuration preset is current for each adjustments mode, with the edits on it, and its
/// keeping with the document. A mode's current configuration is the selected preset and the working
/// data of its preset handler; there is no other copy. Each mode starts on its factory preset.
/// Main thread only; `Terminate` must not be called out of one of its callbacks or signals.
class ORVEL_EXPORT ConfigurationManager {
 public:
  /// See `RegisterConfigurationDataChangedCallback`.
  using ConfigurationSignal = boost::signals2::signal<void(), CallEverySlot>;

  /// See `RegisterModelConfigurationDataChangedCallback`.
  using ModelConfigurationSignal =
      boost::signals2::signal<void(const std::string& modeID, const std::string& modelID,
                                   const PropList& configuration),
                              CallEverySlot>;

  /// Fits a user preset's stored value list of one section from one configuration to another; false
  /// when it cannot.
  using MigrateModelFunction =
      boost::function<bool(const PropList& oldConfiguration, const PropList& newConfiguration,
                           std::vector<float>& values)>;

  /// See `SetHandleDirtyConfigurationPresetFunction`.
  using HandleDirtyFunction =
      boost::function<bool(const std::string& modeID, const Preset<ConfigPresetData>& preset)>;

  /// See `SetReportMissingConfigPresetFunction`.
  using ReportMissingFunction = boost::function<void()>;

  /// See `SetVerifyConfigurationChangeFunction`.
  using VerifyChangeFunction = boost::function<bool(const std::string& modeID)>;

  /// Makes the one instance, which takes over the configurations of the document that is open.
  /// Either pointer may be null; without a cache no mode has a configuration, and the document
  /// keeps what it has.
  static void Initialize(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                         const boost::intrusive_ptr<PresetsCache>& presetsCache,
                         const std::set<std::string>& modeIDs);

  /// Ends the instance; harmless without one. What was registered with the `Set...Function` goes.
  static void Terminate();

  /// Null before `Initialize` and after `Terminate`.
  static ConfigurationManager* Get();

  /// The store that `Initialize` was given; may be null.
  const boost::intrusive_ptr<PresetsCache>& GetPresetsCache() const { return cache_; }

  /// Null for a mode that is not served.
  boost::intrusive_ptr<ConfigPresetsHandler> GetConfigPresetHandler(
      const std::string& modeID) const;

  /// The null guid for a mode that is not served or has no configuration.
  Guid GetCurrentConfigGuidForMode(const std::string& modeID) const;

  /// The same for all modes, in the order of their ids.
  std::vector<Guid> GetCurrentConfigGuidForAllModes() const;

  /// Copies the current configuration of a section; false, with `configuration` as it was, when the
  /// mode or the section is not configured.
  bool GetModelConfiguration(const std::string& modeID, const std::string& modelID,
                             PropList& configuration) const;

  /// Replaces it in the current configuration and signals the section's change. An equal one
  /// changes nothing and gives true. False, with all as it was, when the mode or the section is not
  /// configured or the change is refused.
  bool SetModelConfiguration(const std::string& modeID, const std::string& modelID,
                             const PropList& configuration);

  /// Makes the undoable action that does so, "Configure Orvel Template"; false when the mode or the
  /// section is not configured.
  bool GetSetModelConfigurationAction(const std::string& modeID, const std::string& modelID,
                                      const PropList& configuration,
                                      boost::intrusive_ptr<Action>& action) const;

  /// Whether the current configuration differs from the stored preset; false for a mode without
  /// one.
  bool IsCurrentConfigDirtyForMode(const std::string& modeID) const;

  /// Drops the edits; false for a mode without a current configuration.
  bool RevertCurrentDirtyConfigForMode(const std::string& modeID);

  /// Offers each dirty mode to the dirty-preset handler, in the order of the mode ids, until it
  /// answers false, which is the result then; otherwise true.
  bool HandleDirtyConfigPresets();

  /// Asks the host's session; false when there is no session or no document.
  static bool GetConfigurationPresetsOfCurrentDocument(
      std::vector<Preset<ConfigPresetData>>& presets);

  /// Registers how a section's values are fitted to another configuration, replacing an earlier
  /// function. At any time, also before `Initialize`; the library's own sections are registered.
  static void RegisterModelForPresetMigration(const std::string& modelID,
                                              const MigrateModelFunction& function);

  /// While set, changes of the document are not looked at: the host's own writes of what came from
  /// here.
  void SuspendDocumentChangedMonitoring(bool suspend) { isMonitoringSuspended_ = suspend; }

  /// Called when a document is left with edited configurations; gets the preset with the edits and
  /// answers whether to go on.
  void SetHandleDirtyConfigurationPresetFunction(const HandleDirtyFunction& function);
  /// Called once for a document that brings presets which are not installed.
  void SetReportMissingConfigPresetFunction(const ReportMissingFunction& function);
  /// Asked before a person's selection or a `SetModelConfiguration` takes effect; false refuses it.
  void SetVerifyConfigurationChangeFunction(const VerifyChangeFunction& function);

  /// The slot is called after a mode's current configuration was replaced.
  boost::signals2::connection RegisterConfigurationDataChangedCallback(
      const ConfigurationSignal::slot_type& slot);

  /// The slot is called after the configuration of a section changed, in the order of the model
  /// ids. A section that is no longer configured is announced with an empty list.
  boost::signals2::connection RegisterModelConfigurationDataChangedCallback(
      const ModelConfigurationSignal::slot_type& slot);

 private:
  struct Mode {
    boost::intrusive_ptr<ConfigPresetsHandler> handler;
    boost::signals2::scoped_connection dataConnection;
  };
  using Presets = std::vector<Preset<ConfigPresetData>>;

  ConfigurationManager(const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                       const boost::intrusive_ptr<PresetsCache>& presetsCache,
                       const std::set<std::string>& modeIDs);
  ~ConfigurationManager();

  void AddMode(const std::string& modeID);
  ConfigPresetsHandler* FindConfigured(const std::string& modeID) const;
  void OnSessionChanged(bool changed, bool closing);
  void OnConfigPresetChanged(const Guid& preset, const Guid& successor);
  bool OnCurrentConfigurationDataRequested(const std::string& modeID, ConfigPresetData& data);
  void UpdateCurrentConfigurations(const Presets& presets);
  void ForgetDocumentConfiguration(const std::string& modeID);
  void UpdateCurrentConfiguration(const Preset<ConfigPresetData>& preset);
  void OnWorkingDataChanged(const std::string& modeID, const ConfigPresetData& previous);
  void NotifyConfigurationChanged(const std::string& modeID, const ConfigPresetData& previous,
                                  bool isOneModel);
  void CheckForMissingConfigPresets(const Presets& presets);
  Preset<ConfigPresetData> GetCurrentPreset(const ConfigPresetsHandler& handler) const;
  Presets GetCurrentPresets() const;
  void StoreCurrentConfigurations();
  bool MigrateUserPreset(Preset<UserPresetData>& preset) const;

  boost::intrusive_ptr<SessionHandlerInterface> sessionHandler_;
  boost::intrusive_ptr<PresetsCache> cache_;
  std::map<std::string, Mode> modes_;
  std::map<Guid, std::string> documentNames_;  // of temporary presets: the name in the document
  Presets documentPresets_;                    // what the document holds
  Presets unservedPresets_;                    // of those, the ones of modes that are not served
  bool hasDocument_ = false;                   // that can be read
  unsigned documentNumber_ = 0;                // grows with each one that is opened
  unsigned storeNumber_ = 0;                   // grows with each time that they are to be stored
  HandleDirtyFunction handleDirty_;
  ReportMissingFunction reportMissing_;
  VerifyChangeFunction verifyChange_;
  bool isMonitoringSuspended_ = false;
  bool isReadingDocument_ = false;
  bool isWritingDocument_ = false;
  bool isSettingModel_ = false;  // until the change that `SetModelConfiguration` makes is announced
  ConfigurationSignal configurationChanged_;
  ModelConfigurationSignal modelConfigurationChanged_;
  boost::signals2::scoped_connection documentConnection_;
  boost::signals2::scoped_connection presetConnection_;
};

/// The current configuration of a section; empty when it has none.
ORVEL_EXPORT PropList GetModelConfiguration(const std::string& modeID, const std::string& modelID);

}  // namespace orvel
