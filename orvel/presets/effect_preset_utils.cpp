#include "orvel/presets/effect_preset_utils.h"

#include <algorithm>
#include <cmath>

#include "orvel/core/audio_filter.h"
#include "orvel/core/localizer.h"
#include "orvel/core/text.h"

namespace orvel::presetutils {
namespace {

using teskaudiofilterhost::PresetList;
using teskaudiofilterhost::utility::CreateAudioFilter;

constexpr char kCustomPresetName[] =
    "$$$/app/panels/BasicAdjustments/Sections/CustomPresetName=^QCustom^Q";
constexpr float kTolerance = 0.001f;

// Never freed: a host may ask as long as it runs. Null until one is registered.
boost::intrusive_ptr<PresetManager>& RegisteredManager() {
  static auto& manager = *new boost::intrusive_ptr<PresetManager>;
  return manager;
}

boost::intrusive_ptr<PresetManager> Manager() {
  const auto& registered = RegisteredManager();
  return registered ? registered : boost::intrusive_ptr<PresetManager>(new PresetManager);
}

boost::intrusive_ptr<PresetList> PresetsOf(const std::u16string& componentID) {
  const auto effect = CreateAudioFilter(componentID);
  return effect ? effect->GetPresetList() : nullptr;
}

bool AreClose(float left, float right) {
  const double difference = std::abs(static_cast<double>(left) - static_cast<double>(right));
  return static_cast<float>(difference) <= kTolerance;
}

// The names of the settings in a table, in their order. What is no list of values is no setting.
std::vector<std::string> SettingNames(const PropList& configuration, const std::string& tableKey) {
  PropList table;
  configuration.GetValue(tableKey, table);
  std::vector<std::string> names;
  for (const auto& [name, value] : table) {
    std::vector<float> values;
    if (table.GetValue(name, values)) names.push_back(name);
  }
  return names;
}

}  // namespace

void PresetManager::GetPresetNames(const std::u16string& componentID,
                                   std::set<std::u16string>& names) {
  const auto presets = PresetsOf(componentID);
  if (presets) presets->GetPresetNames(names);
}

bool PresetManager::GetPreset(const std::u16string& componentID, const std::u16string& name,
                              std::list<float>& values) {
  const auto presets = PresetsOf(componentID);
  const auto preset = presets ? presets->GetPreset(name) : nullptr;
  if (preset) preset->GetParamList(values);
  return preset != nullptr;
}

void RegisterPresetManager(const boost::intrusive_ptr<PresetManager>& manager) {
  RegisteredManager() = manager;
}

void GetConfigPresetNames(const std::u16string& componentID, std::set<std::u16string>& names) {
  Manager()->GetPresetNames(componentID, names);
}

bool GetConfigPreset(const std::u16string& componentID, const std::u16string& name,
                     std::list<float>& values) {
  return Manager()->GetPreset(componentID, name, values);
}

void AddPresetToConfiguration(PropList& configuration, const std::string& tableKey,
                              const std::list<float>& values, const std::string& name) {
  PropList table;
  configuration.GetValue(tableKey, table);
  table.SetValue(name, std::vector<float>(values.begin(), values.end()));
  configuration.SetValue(tableKey, table);
}

void AddAllEffectPresets(PropList& configuration, const std::string& tableKey,
                         const std::u16string& componentID) {
  PropList table;
  configuration.GetValue(tableKey, table);
  configuration.SetValue(tableKey, table);
  std::set<std::u16string> names;
  GetConfigPresetNames(componentID, names);
  for (const auto& name : names) {
    std::list<float> values;
    if (!GetConfigPreset(componentID, name, values)) continue;
    AddPresetToConfiguration(configuration, tableKey, values, UTF16to8(name));
  }
}

bool GetPresetFromConfiguration(const PropList& configuration, const std::string& tableKey,
                                const std::string& name, std::list<float>& values) {
  PropList table;
  std::vector<float> stored;
  if (!configuration.GetValue(tableKey, table) || !table.GetValue(name, stored)) return false;
  values.assign(stored.begin(), stored.end());
  return true;
}

void RemovePresetFromConfiguration(PropList& configuration, const std::string& tableKey,
                                   const std::string& name) {
  PropList table;
  if (!configuration.GetValue(tableKey, table)) return;
  table.RemoveValue(name);
  configuration.SetValue(tableKey, table);
}

bool GetPresetNameForConfig(const std::u16string& componentID, const std::list<float>& values,
                            std::u16string& name) {
  std::set<std::u16string> names;
  GetConfigPresetNames(componentID, names);
  for (const auto& candidate : names) {
    std::list<float> stored;
    if (!GetConfigPreset(componentID, candidate, stored)) continue;
    if (!std::equal(stored.begin(), stored.end(), values.begin(), values.end(), AreClose)) {
      continue;
    }
    name = candidate;
    return true;
  }
  name = ZString(kCustomPresetName);
  return false;
}

bool MigratePresetControlBasedPreset(const PropList& oldConfiguration,
                                     const PropList& newConfiguration, const std::string& tableKey,
                                     std::size_t valueIndex, std::vector<float>& values) {
  const auto oldNames = SettingNames(oldConfiguration, tableKey);
  if (valueIndex >= values.size() || oldNames.empty() || std::isnan(values[valueIndex])) {
    return false;
  }
  const float last = static_cast<float>(oldNames.size() - 1);
  const float place = std::round(std::clamp(values[valueIndex], 0.0f, last));
  const auto newNames = SettingNames(newConfiguration, tableKey);
  const auto found = std::ranges::find(newNames, oldNames[static_cast<std::size_t>(place)]);
  if (found == newNames.end()) return false;
  values[valueIndex] = static_cast<float>(found - newNames.begin());
  return true;
}

}  // namespace orvel::presetutils
