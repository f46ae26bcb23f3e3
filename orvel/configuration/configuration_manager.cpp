#include "orvel/configuration/configuration_manager.h"

#include <algorithm>
#include <utility>

#include "orvel/actions/set_model_configuration_action.h"
#include "orvel/configuration/section_migrations.h"
#include "orvel/core/flag_scope.h"
#include "orvel/core/localizer.h"
#include "orvel/core/text.h"
#include "orvel/definitions/lifecycle.h"

namespace orvel {

const std::string kSessionPropertyKey_Configurations = "OrvelConfigurations";

namespace {

using teskcore::utility::FlagScope;

constexpr char kSessionConfigName[] =
    "$$$/orvel/ConfigurationManager/SessionConfigIndicator=@0 (from Session)";
constexpr char kChangeConfigurationName[] =
    "$$$/orvel/Action/ChangeConfiguration=Configure Orvel Template";

ConfigurationManager* instance = nullptr;

// Never freed: sections may register from static initialisers and hosts ask at any time.
std::map<std::string, ConfigurationManager::MigrateModelFunction>& Migrations() {
  static auto& migrations = *new std::map<std::string, ConfigurationManager::MigrateModelFunction>(
      GetSectionMigrations());
  return migrations;
}

bool AreSame(const std::vector<Preset<ConfigPresetData>>& left,
             const std::vector<Preset<ConfigPresetData>>& right) {
  return std::ranges::equal(left, right, [](const auto& a, const auto& b) {
    return a.Guid == b.Guid && a.Name == b.Name && a.PresetData == b.PresetData;
  });
}

std::string SessionConfigName(const std::string& name) {
  return UTF16to8(ZString(kSessionConfigName, UTF8to16(name)));
}

PropList ConfigurationOf(const ConfigPresetData& data, const std::string& modelID) {
  const auto found = data.Models.find(modelID);
  return found == data.Models.end() ? PropList() : found->second;
}

}  // namespace

void ConfigurationManager::Initialize(
    const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
    const boost::intrusive_ptr<PresetsCache>& presetsCache, const std::set<std::string>& modeIDs) {
  Terminate();
  instance = new ConfigurationManager(sessionHandler, presetsCache, modeIDs);
  // A document may have been opened before the library was started.
  instance->OnSessionChanged(true, false);
}

void ConfigurationManager::Terminate() { delete std::exchange(instance, nullptr); }

ConfigurationManager* ConfigurationManager::Get() { return instance; }

ConfigurationManager::ConfigurationManager(
    const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
    const boost::intrusive_ptr<PresetsCache>& presetsCache, const std::set<std::string>& modeIDs)
    : sessionHandler_(sessionHandler), cache_(presetsCache) {
  for (const auto& modeID : modeIDs) AddMode(modeID);
  if (cache_) {
    presetConnection_ =
        cache_->RegisterForConfigPresetChanges([this](const Guid& preset, const Guid& successor) {
          OnConfigPresetChanged(preset, successor);
        });
  }
  if (sessionHandler_) {
    documentConnection_ = sessionHandler_->RegisterForDocumentChanges(
        [this](bool changed, bool closing) { OnSessionChanged(changed, closing); });
  }
  // Last: when a host's code throws above, no destructor takes it back.
  if (cache_) {
    cache_->SetMigrateUserPresetFunction(
        [this](Preset<UserPresetData>& preset) { return MigrateUserPreset(preset); });
  }
}

ConfigurationManager::~ConfigurationManager() {
  if (cache_) cache_->SetMigrateUserPresetFunction({});
  // A handler may outlive this, with whoever holds it.
  for (const auto& [modeID, mode] : modes_) mode.handler->SetSelectionVerifier({});
}

void ConfigurationManager::AddMode(const std::string& modeID) {
  Mode& mode = modes_[modeID];
  mode.handler = new ConfigPresetsHandler(
      cache_,
      [modeID](const Preset<ConfigPresetData>& preset) {
        return preset.PresetData.ModeID == modeID;
      },
      [modeID](ConfigPresetData& data) {
        return instance != nullptr && instance->OnCurrentConfigurationDataRequested(modeID, data);
      });
  Preset<ConfigPresetData> factory;
  if (cache_ && cache_->GetFactoryConfigPreset(modeID, factory)) {
    mode.handler->Restore(factory, factory.PresetData);
  }
  mode.handler->SetSelectionVerifier([this, modeID](const Preset<ConfigPresetData>& preset) {
    const VerifyChangeFunction verify = verifyChange_;  // it may replace itself
    return preset.PresetData.ModeID == modeID && (!verify || verify(modeID));
  });
  mode.dataConnection = mode.handler->RegisterForDataChanges(
      [this, modeID](const ConfigPresetData& previous) { OnWorkingDataChanged(modeID, previous); });
}

boost::intrusive_ptr<ConfigPresetsHandler> ConfigurationManager::GetConfigPresetHandler(
    const std::string& modeID) const {
  const auto found = modes_.find(modeID);
  return found == modes_.end() ? nullptr : found->second.handler;
}

Guid ConfigurationManager::GetCurrentConfigGuidForMode(const std::string& modeID) const {
  const auto handler = GetConfigPresetHandler(modeID);
  return handler ? handler->GetSelectedGuid() : Guid();
}

std::vector<Guid> ConfigurationManager::GetCurrentConfigGuidForAllModes() const {
  std::vector<Guid> guids;
  for (const auto& [modeID, mode] : modes_) guids.push_back(GetCurrentConfigGuidForMode(modeID));
  return guids;
}

// Null for a mode without a current configuration.
ConfigPresetsHandler* ConfigurationManager::FindConfigured(const std::string& modeID) const {
  return GetCurrentConfigGuidForMode(modeID).IsNull() ? nullptr
                                                      : GetConfigPresetHandler(modeID).get();
}

bool ConfigurationManager::GetModelConfiguration(const std::string& modeID,
                                                 const std::string& modelID,
                                                 PropList& configuration) const {
  const ConfigPresetsHandler* handler = FindConfigured(modeID);
  if (handler == nullptr) return false;
  const auto& models = handler->GetWorkingData().Models;
  const auto found = models.find(modelID);
  if (found == models.end()) return false;
  configuration = found->second;
  return true;
}

bool ConfigurationManager::SetModelConfiguration(const std::string& modeID,
                                                 const std::string& modelID,
                                                 const PropList& configuration) {
  PropList current;
  if (!GetModelConfiguration(modeID, modelID, current)) return false;
  if (current == configuration) return true;
  const VerifyChangeFunction verify = verifyChange_;  // it may replace itself
  if (verify && !verify(modeID)) return false;
  ConfigPresetsHandler* handler = FindConfigured(modeID);  // the verifier may have changed much
  if (handler == nullptr) return false;
  ConfigPresetData data = handler->GetWorkingData();
  data.Models[modelID] = configuration;
  const FlagScope setting(isSettingModel_);
  handler->SetWorkingData(data);
  return true;
}

bool ConfigurationManager::GetSetModelConfigurationAction(
    const std::string& modeID, const std::string& modelID, const PropList& configuration,
    boost::intrusive_ptr<Action>& action) const {
  PropList current;
  if (!GetModelConfiguration(modeID, modelID, current)) return false;
  action = CreateSetModelConfigurationAction(modeID, modelID, configuration,
                                             ZString(kChangeConfigurationName));
  return true;
}

bool ConfigurationManager::IsCurrentConfigDirtyForMode(const std::string& modeID) const {
  const ConfigPresetsHandler* handler = FindConfigured(modeID);
  return handler != nullptr && handler->IsModified();
}

bool ConfigurationManager::RevertCurrentDirtyConfigForMode(const std::string& modeID) {
  ConfigPresetsHandler* handler = FindConfigured(modeID);
  if (handler == nullptr) return false;
  if (handler->IsModified()) handler->Revert();
  return true;
}

bool ConfigurationManager::HandleDirtyConfigPresets() {
  const HandleDirtyFunction handleDirty = handleDirty_;  // it may replace itself
  if (!handleDirty) return true;
  for (const auto& [modeID, mode] : modes_) {
    if (!IsCurrentConfigDirtyForMode(modeID)) continue;
    if (!handleDirty(modeID, GetCurrentPreset(*mode.handler))) return false;
  }
  return true;
}

bool ConfigurationManager::GetConfigurationPresetsOfCurrentDocument(Presets& presets) {
  const auto sessionHandler = factory::GetSessionHandler();
  return sessionHandler && sessionHandler->GetConfigurationPresets(presets);
}

void ConfigurationManager::RegisterModelForPresetMigration(const std::string& modelID,
                                                           const MigrateModelFunction& function) {
  Migrations()[modelID] = function;
}

void ConfigurationManager::SetHandleDirtyConfigurationPresetFunction(
    const HandleDirtyFunction& function) {
  handleDirty_ = function;
}

void ConfigurationManager::SetReportMissingConfigPresetFunction(
    const ReportMissingFunction& function) {
  reportMissing_ = function;
}

void ConfigurationManager::SetVerifyConfigurationChangeFunction(
    const VerifyChangeFunction& function) {
  verifyChange_ = function;
}

boost::signals2::connection ConfigurationManager::RegisterConfigurationDataChangedCallback(
    const ConfigurationSignal::slot_type& slot) {
  return configurationChanged_.connect(slot);
}

boost::signals2::connection ConfigurationManager::RegisterModelConfigurationDataChangedCallback(
    const ModelConfigurationSignal::slot_type& slot) {
  return modelConfigurationChanged_.connect(slot);
}

// When a document closes there is nothing to hand back: the handlers' working data are the current
// configurations, and the document holds the same. What is left from it goes when the next one is
// opened.
void ConfigurationManager::OnSessionChanged(bool changed, bool closing) {
  if (isMonitoringSuspended_ || isWritingDocument_ || !sessionHandler_) return;
  if (closing) hasDocument_ = false;
  if (closing || !changed) return;
  const unsigned number = ++documentNumber_;
  const bool hadDocument = std::exchange(hasDocument_, false);  // nothing to store in, until read
  Presets presets;
  FirstException failure;
  bool isReadable = false;
  failure.Catch([&] { isReadable = sessionHandler_->GetConfigurationPresets(presets); });
  if (number != documentNumber_) return failure.Rethrow();
  hasDocument_ = isReadable;
  if (!isReadable) presets.clear();
  // A host may tell late of what was written from here: no document is opened then. Where edits
  // could not be written, the document has come back without them.
  if (isReadable && hadDocument && AreSame(presets, documentPresets_) &&
      (isReadingDocument_ || AreSame(GetCurrentPresets(), documentPresets_))) {
    --documentNumber_;
    return;
  }
  {
    const FlagScope reading(isReadingDocument_);
    documentPresets_ = presets;
    unservedPresets_ = presets;
    std::erase_if(unservedPresets_,
                  [this](const auto& preset) { return modes_.contains(preset.PresetData.ModeID); });
    documentNames_.clear();
    // Whoever is told of a step may throw, or open another document.
    const auto take = [&](const auto& step) {
      if (number == documentNumber_) failure.Catch(step);
    };
    if (cache_) take([this] { cache_->RemoveTemporaryPresets(); });
    take([&] { CheckForMissingConfigPresets(presets); });
    take([&] { UpdateCurrentConfigurations(presets); });
  }
  failure.Catch([this] { StoreCurrentConfigurations(); });
  failure.Rethrow();
}

void ConfigurationManager::UpdateCurrentConfigurations(const Presets& presets) {
  const unsigned number = documentNumber_;
  FirstException failure;
  const auto take = [&](const auto& step) {
    if (number == documentNumber_) failure.Catch(step);
  };
  for (const auto& [modeID, mode] : modes_) {
    const bool isMentioned = std::ranges::any_of(
        presets, [&id = modeID](const auto& preset) { return preset.PresetData.ModeID == id; });
    if (!isMentioned) take([this, &id = modeID] { ForgetDocumentConfiguration(id); });
  }
  for (const auto& preset : presets) take([&] { UpdateCurrentConfiguration(preset); });
  failure.Rethrow();
}

// A mode that a document does not mention keeps the preset that is selected, without the edits that
// belonged to the document before; one that has gone by now gives way to the factory's.
void ConfigurationManager::ForgetDocumentConfiguration(const std::string& modeID) {
  ConfigPresetsHandler& handler = *modes_.at(modeID).handler;
  Preset<ConfigPresetData> preset;
  if (cache_ && !cache_->FindPreset(handler.GetSelectedGuid(), preset) &&
      cache_->GetFactoryConfigPreset(modeID, preset)) {
    return handler.Restore(preset, preset.PresetData);
  }
  RevertCurrentDirtyConfigForMode(modeID);
}

void ConfigurationManager::UpdateCurrentConfiguration(const Preset<ConfigPresetData>& preset) {
  const auto handler = GetConfigPresetHandler(preset.PresetData.ModeID);
  if (!handler || !cache_ || preset.Guid.IsNull()) return;
  Preset<ConfigPresetData> selected;
  FirstException failure;
  const bool isInstalled = cache_->FindPreset(preset.Guid, selected);
  if (!isInstalled || selected.PresetData.ModeID != preset.PresetData.ModeID) {
    selected = preset;
    if (isInstalled) selected.Guid = Guid::CreateUnique();  // a preset of another mode has it
    selected.Name = SessionConfigName(preset.Name);
    // What cannot be filed stays current all the same, and goes back into the document.
    failure.Catch([&] { cache_->AddTemporaryPreset(selected); });
    cache_->FindPreset(selected.Guid, selected);
    documentNames_[selected.Guid] = preset.Name;
  } else if (selected.Name == SessionConfigName(preset.Name)) {
    documentNames_[selected.Guid] = preset.Name;  // a session's template that stayed
  }
  failure.Catch([&] { handler->Restore(selected, preset.PresetData); });
  failure.Rethrow();
}

// A preset that was saved may have another name now, and one that was removed gives way to the
// factory's.
void ConfigurationManager::OnConfigPresetChanged(const Guid& preset, const Guid& successor) {
  if (preset == successor) {
    if (!cache_->IsTemporaryPreset(preset)) documentNames_.erase(preset);
    return StoreCurrentConfigurations();
  }
  for (const auto& [modeID, mode] : modes_) {
    if (mode.handler->GetSelectedGuid() != preset || mode.handler->IsChangingCache()) continue;
    Preset<ConfigPresetData> next;
    if (!cache_->FindPreset(successor, next)) cache_->GetFactoryConfigPreset(modeID, next);
    mode.handler->Restore(next, next.PresetData);
  }
}

bool ConfigurationManager::OnCurrentConfigurationDataRequested(const std::string& modeID,
                                                               ConfigPresetData& data) {
  const ConfigPresetsHandler* handler = FindConfigured(modeID);
  if (handler != nullptr) data = handler->GetWorkingData();
  return handler != nullptr;
}

// Stored first, so that whoever is told may save the document.
void ConfigurationManager::OnWorkingDataChanged(const std::string& modeID,
                                                const ConfigPresetData& previous) {
  const bool isOneModel = std::exchange(isSettingModel_, false);
  FirstException failure;
  failure.Catch([this] { StoreCurrentConfigurations(); });
  failure.Catch([&] { NotifyConfigurationChanged(modeID, previous, isOneModel); });
  failure.Rethrow();
}

// A slot may change the configuration again. Each signal then carries what holds when it is sent,
// so that the last one that a section hears is the truth.
void ConfigurationManager::NotifyConfigurationChanged(const std::string& modeID,
                                                      const ConfigPresetData& previous,
                                                      bool isOneModel) {
  const auto handler = modes_.at(modeID).handler;
  std::set<std::string> modelIDs;
  for (const auto& [modelID, configuration] : previous.Models) modelIDs.insert(modelID);
  for (const auto& [modelID, configuration] : handler->GetWorkingData().Models) {
    modelIDs.insert(modelID);
  }
  FirstException failure;
  if (!isOneModel) failure.Catch([this] { configurationChanged_(); });
  for (const auto& modelID : modelIDs) {
    const PropList configuration = ConfigurationOf(handler->GetWorkingData(), modelID);
    if (configuration == ConfigurationOf(previous, modelID)) continue;
    failure.Catch([&] { modelConfigurationChanged_(modeID, modelID, configuration); });
  }
  failure.Rethrow();
}

void ConfigurationManager::CheckForMissingConfigPresets(const Presets& presets) {
  const bool isAnyMissing = std::ranges::any_of(presets, [this](const auto& preset) {
    Preset<ConfigPresetData> installed;
    return !preset.Guid.IsNull() && modes_.contains(preset.PresetData.ModeID) && cache_ &&
           !cache_->FindPreset(preset.Guid, installed);
  });
  const ReportMissingFunction report = reportMissing_;  // it may replace itself
  if (isAnyMissing && report) report();
}

// The selected preset with the edits, under the name that a document gives it.
Preset<ConfigPresetData> ConfigurationManager::GetCurrentPreset(
    const ConfigPresetsHandler& handler) const {
  Preset<ConfigPresetData> preset = handler.GetSelectedPreset();
  const auto documentName = documentNames_.find(preset.Guid);
  if (documentName != documentNames_.end()) preset.Name = documentName->second;
  preset.Type = ConfigPresetData::kType;
  preset.PresetData = handler.GetWorkingData();
  return preset;
}

ConfigurationManager::Presets ConfigurationManager::GetCurrentPresets() const {
  Presets presets;
  for (const auto& [modeID, mode] : modes_) {
    if (FindConfigured(modeID) != nullptr) presets.push_back(GetCurrentPreset(*mode.handler));
  }
  presets.insert(presets.end(), unservedPresets_.begin(), unservedPresets_.end());
  return presets;
}

// What the host edits while it is handed them is handed to it once more afterwards, so that the
// document ends up with the truth whenever in between it keeps them. That they differ is no reason
// to go on: a NaN equals nothing.
void ConfigurationManager::StoreCurrentConfigurations() {
  // Without a cache no mode has a configuration, which is no reason to take the document's away.
  if (!sessionHandler_ || !cache_ || isReadingDocument_ || !hasDocument_) return;
  unsigned number = 0;
  do {
    number = ++storeNumber_;
    const Presets presets = GetCurrentPresets();
    if (AreSame(presets, documentPresets_)) return;
    const FlagScope writing(isWritingDocument_);
    if (!sessionHandler_->SetConfigurationPresets(presets)) return;
    documentPresets_ = presets;
  } while (hasDocument_ && number != storeNumber_);
}

bool ConfigurationManager::MigrateUserPreset(Preset<UserPresetData>& preset) const {
  Preset<ConfigPresetData> source;
  Preset<ConfigPresetData> target;
  cache_->FindPreset(cache_->GetMigrationSource(), source);
  cache_->FindPreset(preset.PresetData.Config, target);
  bool isFitted = true;
  for (auto& [modelID, values] : preset.PresetData.Models) {
    const auto migration = Migrations().find(modelID);
    if (migration == Migrations().end() || !migration->second) continue;
    const MigrateModelFunction migrate = migration->second;  // it may replace itself
    isFitted &= migrate(ConfigurationOf(source.PresetData, modelID),
                        ConfigurationOf(target.PresetData, modelID), values);
  }
  return isFitted;
}

PropList GetModelConfiguration(const std::string& modeID, const std::string& modelID) {
  PropList configuration;
  const auto* manager = ConfigurationManager::Get();
  if (manager != nullptr) manager->GetModelConfiguration(modeID, modelID, configuration);
  return configuration;
}

}  // namespace orvel
