#include "host/catalogue/preset_table.h"

#include <sstream>
#include <utility>
#include <vector>

namespace orvelhost {
namespace {

using teskcore::serialization::AddToObject;
using teskcore::serialization::JSONObject;
using teskcore::serialization::JSONValue;

// The parameters of a section's stored value list with their values; fewer when the list is short.
std::vector<std::pair<std::string, float>> NameValues(const ModeCatalogue& catalogue,
                                                      const std::string& modeID,
                                                      const std::string& modelID,
                                                      const std::vector<float>& values) {
  std::vector<std::pair<std::string, float>> named;
  orvel::SectionDefinition definition;
  orvel::factory::CreateSectionModelDefinition(modelID, catalogue.GetConfiguration(modeID, modelID),
                                               definition);
  for (const auto& param : definition.GetParamDefinitions()) {
    if (param.HasFlag(orvel::kParamFlag_NotStored)) continue;
    if (named.size() == values.size()) break;
    named.emplace_back(param.name, values[named.size()]);
  }
  return named;
}

}  // namespace

std::string ToText(const orvel::UserPreset& preset, const ModeCatalogue& catalogue) {
  std::ostringstream text;
  text << ShownName(preset.Name) << "  (" << preset.PresetData.ModeID << ", "
       << preset.Guid.AsUTF8String() << ")\n";
  for (const auto& [modelID, values] : preset.PresetData.Models) {
    text << "  " << ShortSectionName(modelID) << ":";
    for (const auto& [name, value] :
         NameValues(catalogue, preset.PresetData.ModeID, modelID, values)) {
      text << ' ' << name << '=' << value;
    }
    text << '\n';
  }
  return text.str();
}

JSONValue ToJSON(const orvel::UserPreset& preset, const ModeCatalogue& catalogue) {
  JSONValue sections = JSONObject();
  for (const auto& [modelID, values] : preset.PresetData.Models) {
    JSONValue section = JSONObject();
    for (const auto& [name, value] :
         NameValues(catalogue, preset.PresetData.ModeID, modelID, values)) {
      AddToObject(section, name, JSONValue(static_cast<double>(value)));
    }
    AddToObject(sections, ShortSectionName(modelID), section);
  }
  JSONValue object;
  AddToObject(object, "name", JSONValue(ShownName(preset.Name)));
  AddToObject(object, "guid", JSONValue(preset.Guid.AsUTF8String()));
  AddToObject(object, "mode", JSONValue(preset.PresetData.ModeID));
  AddToObject(object, "sections", sections);
  return object;
}

}  // namespace orvelhost
