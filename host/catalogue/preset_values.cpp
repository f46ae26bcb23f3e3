#include "host/catalogue/preset_values.h"

#include <algorithm>

#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/setting.h"

namespace orvelhost {
namespace {

/// Writes the values of one section into its stored value list, whose end may be missing, and what
/// another template allows is brought into its ranges.
void WriteValues(const orvel::SectionDefinition& section, const std::vector<Setting>& settings,
                 std::vector<float>& list) {
  std::size_t place = 0;
  for (const auto& param : section.GetParamDefinitions()) {
    if (param.HasFlag(orvel::kParamFlag_NotStored)) continue;
    if (place == list.size()) list.push_back(param.defaultValue);
    for (const Setting& setting : settings) {
      if (setting.modelID == section.GetModelID() && setting.paramID == param.id) {
        list[place] = setting.physical;
      }
    }
    list[place] = std::max(param.minValue, std::min(list[place], param.maxValue));
    ++place;
  }
}

}  // namespace

orvel::UserPresetData MakeDefaultValues(const orvel::ConfigPreset& configuration) {
  orvel::UserPresetData data{configuration.Guid, configuration.PresetData.ModeID, {}};
  for (const auto& section : MakeSections(configuration)) {
    WriteValues(section, {}, data.Models[section.GetModelID()]);
  }
  return data;
}

bool SetPresetValues(const std::vector<std::string>& texts,
                     const orvel::ConfigPreset& configuration, orvel::UserPresetData& data,
                     std::string& error) {
  const auto sections = MakeSections(configuration);
  std::vector<Setting> settings;
  if (!ParseSettings(texts, sections, settings, error)) return false;
  for (const auto& section : sections) {
    WriteValues(section, settings, data.Models[section.GetModelID()]);
  }
  return true;
}

}  // namespace orvelhost
