#include "host/catalogue/preset_table.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include "host/catalogue/json_values.h"
#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::JSONConvert;
using teskcore::serialization::JSONObject;
using teskcore::serialization::JSONValue;

/// The parameters of a section's stored value list with their values; fewer when the list is short.
std::vector<std::pair<std::string, float>> NameValues(const orvel::ConfigPreset& configuration,
                                                      const std::string& modelID,
                                                      const std::vector<float>& values) {
  const auto& models = configuration.PresetData.Models;
  const auto found = models.find(modelID);
  orvel::SectionDefinition definition;
  orvel::factory::CreateSectionModelDefinition(
      modelID, found == models.end() ? orvel::PropList() : found->second, definition);
  std::vector<std::pair<std::string, float>> named;
  for (const auto& param : definition.GetParamDefinitions()) {
    if (param.HasFlag(orvel::kParamFlag_NotStored)) continue;
    if (named.size() == values.size()) break;
    named.emplace_back(param.name, values[named.size()]);
  }
  return named;
}

std::int64_t CountPresets(const orvel::ConfigPreset& configuration, const PresetStore& store) {
  return std::ranges::count(
      store.GetPresets(configuration.PresetData.ModeID), configuration.Guid,
      [](const orvel::UserPreset& preset) { return preset.PresetData.Config; });
}

}  // namespace

std::string ToText(const orvel::UserPreset& preset, const PresetStore& store) {
  const orvel::ConfigPreset configuration = store.GetTemplate(preset);
  std::ostringstream text;
  text << store.Describe(preset) << "\n";
  for (const auto& [modelID, values] : preset.PresetData.Models) {
    text << "  " << ShortSectionName(modelID) << ":";
    for (const auto& [name, value] : NameValues(configuration, modelID, values)) {
      text << ' ' << name << '=' << value;
    }
    text << '\n';
  }
  return text.str();
}

JSONValue ToJSON(const orvel::UserPreset& preset, const PresetStore& store) {
  const orvel::ConfigPreset configuration = store.GetTemplate(preset);
  JSONValue sections = JSONObject();
  for (const auto& [modelID, values] : preset.PresetData.Models) {
    JSONValue section = JSONObject();
    for (const auto& [name, value] : NameValues(configuration, modelID, values)) {
      AddToObject(section, name, JSONValue(static_cast<double>(value)));
    }
    AddToObject(sections, ShortSectionName(modelID), section);
  }
  return MakeObject({{"name", ShownName(preset.Name)},
                     {"guid", preset.Guid.AsUTF8String()},
                     {"mode", preset.PresetData.ModeID},
                     {"template", ShownName(configuration.Name)},
                     {"template_guid", configuration.Guid.AsUTF8String()},
                     {"factory", store.IsFactory(preset)},
                     {"sections", sections}});
}

std::string ToText(const orvel::ConfigPreset& configuration, const PresetStore& store) {
  const std::int64_t count = CountPresets(configuration, store);
  std::ostringstream text;
  text << PrintedName(configuration.Name) << "  (" << configuration.PresetData.ModeID
       << (store.IsFactory(configuration) ? ", comes with the library, " : ", ")
       << configuration.Guid.AsUTF8String() << "): " << count
       << (count == 1 ? " preset\n" : " presets\n");
  return text.str();
}

JSONValue ToJSON(const orvel::ConfigPreset& configuration, const PresetStore& store) {
  JSONValue sections = JSONObject();
  for (const auto& [modelID, settings] : configuration.PresetData.Models) {
    AddToObject(sections, ShortSectionName(modelID),
                JSONConvert<orvel::PropList>::ToJSON(settings));
  }
  return MakeObject({{"name", ShownName(configuration.Name)},
                     {"guid", configuration.Guid.AsUTF8String()},
                     {"mode", configuration.PresetData.ModeID},
                     {"factory", store.IsFactory(configuration)},
                     {"presets", CountPresets(configuration, store)},
                     {"sections", sections}});
}

}  // namespace orvelhost
