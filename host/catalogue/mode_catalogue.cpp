#include "host/catalogue/mode_catalogue.h"

#include <cstdio>
#include <string_view>

#include "host/audio/audio_error.h"
#include "host/catalogue/json_values.h"

namespace orvelhost {
namespace {

using teskcore::serialization::JSONValue;

constexpr std::string_view kModelPrefix = "model_";

std::vector<std::string> GetSectionNames(const std::string& modeID) {
  std::vector<orvel::SectionDescriptor> sections;
  orvel::ModeDescriptorCache::Get()->GetSectionDescriptors(modeID, sections);
  std::vector<std::string> names;
  names.reserve(sections.size());
  for (const auto& section : sections) names.push_back(ShortSectionName(section.modelID));
  return names;
}

template <typename GetConfiguration>
std::vector<orvel::SectionDefinition> MakeSections(const std::string& modeID,
                                                   const GetConfiguration& getConfiguration) {
  std::vector<orvel::SectionDescriptor> descriptors;
  orvel::ModeDescriptorCache::Get()->GetSectionDescriptors(modeID, descriptors);
  std::vector<orvel::SectionDefinition> sections;
  for (const auto& descriptor : descriptors) {
    orvel::SectionDefinition definition;
    if (orvel::factory::CreateSectionModelDefinition(
            descriptor.modelID, getConfiguration(descriptor.modelID), definition)) {
      sections.push_back(definition);
    }
  }
  return sections;
}

void AppendToList(std::string& list, const std::string& entry) {
  list += (list.empty() ? "" : ", ") + entry;
}

}  // namespace

std::vector<orvel::AdjustmentModeInfo> GetModes() {
  return orvel::ModeDescriptorCache::Get()->GetAdjustmentsModeInfos();
}

bool IsMode(const std::string& modeID) {
  return orvel::ModeDescriptorCache::Get()->IsValidMode(modeID);
}

std::string ListModes() {
  std::string list;
  for (const auto& mode : GetModes()) AppendToList(list, mode.modeID);
  return list;
}

std::vector<orvel::SectionDefinition> MakeSections(const std::string& modeID) {
  return MakeSections(modeID, [&modeID](const std::string& modelID) {
    return orvel::GetModelConfiguration(modeID, modelID);
  });
}

std::vector<orvel::SectionDefinition> MakeSections(const orvel::ConfigPreset& configuration) {
  const auto& models = configuration.PresetData.Models;
  return MakeSections(configuration.PresetData.ModeID, [&models](const std::string& modelID) {
    const auto found = models.find(modelID);
    return found == models.end() ? orvel::PropList() : found->second;
  });
}

std::string ModesAsText() {
  std::string text;
  for (const auto& mode : GetModes()) {
    std::string sections;
    for (const auto& name : GetSectionNames(mode.modeID)) AppendToList(sections, name);
    char start[64];
    std::snprintf(start, sizeof start, "%-10s %-12s ", mode.modeID.c_str(),
                  orvel::UTF16to8(mode.localizedDisplayName).c_str());
    text += start + sections + "\n";
  }
  return text;
}

JSONValue ModesAsJSON() {
  return MakeArray(GetModes(), [](const auto& mode) {
    return MakeObject({{"mode", mode.modeID},
                       {"name", orvel::UTF16to8(mode.localizedDisplayName)},
                       {"sections", MakeArray(GetSectionNames(mode.modeID))}});
  });
}

std::string ShownName(const std::string& name) { return orvel::UTF16to8(orvel::ZString(name)); }

std::string PrintedName(const std::string& name) { return Printable(ShownName(name)); }

std::string EnglishName(const std::string& name) {
  const std::size_t equals = name.find('=');
  if (!name.starts_with("$$$/") || equals == std::string::npos) return name;
  return ShownName("$$$/" + name.substr(equals));  // no translation has an empty path
}

std::string ShortSectionName(const std::string& modelID) {
  return modelID.starts_with(kModelPrefix) ? modelID.substr(kModelPrefix.size()) : modelID;
}

}  // namespace orvelhost
