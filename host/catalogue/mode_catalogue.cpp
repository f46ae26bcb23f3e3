#include "host/catalogue/mode_catalogue.h"

#include <algorithm>

namespace orvelhost {
namespace {

constexpr std::string_view kModelPrefix = "model_";

std::string ReadResource(const std::u16string& name) {
  std::vector<unsigned char> bytes;
  orvel::GetBinaryFromModule(orvel::GetLibraryModule(), name, u"json", bytes);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

const orvel::AdjustmentsModeDescriptor* ModeCatalogue::FindMode(const std::string& modeID) const {
  const auto found = std::ranges::find(modes, modeID, &orvel::AdjustmentsModeDescriptor::modeID);
  return found == modes.end() ? nullptr : &*found;
}

orvel::PropList ModeCatalogue::GetConfiguration(const std::string& modeID,
                                                const std::string& modelID) const {
  for (const auto& preset : templates) {
    const auto found = preset.PresetData.Models.find(modelID);
    if (preset.PresetData.ModeID == modeID && found != preset.PresetData.Models.end()) {
      return found->second;
    }
  }
  return {};
}

std::vector<orvel::SectionDefinition> ModeCatalogue::GetSections(
    const orvel::AdjustmentsModeDescriptor& mode) const {
  std::vector<orvel::SectionDefinition> sections;
  for (const auto& section : mode.sections) {
    orvel::SectionDefinition definition;
    const auto configuration = GetConfiguration(mode.modeID, section.modelID);
    if (orvel::factory::CreateSectionModelDefinition(section.modelID, configuration, definition)) {
      sections.push_back(definition);
    }
  }
  return sections;
}

ModeCatalogue ReadModeCatalogue() {
  ModeCatalogue catalogue;
  catalogue.modes = orvel::GetDefaultAdjustmentsModeDescriptors();
  orvel::ReadPresets(ReadResource(u"OrvelConfigPresets"), catalogue.templates);
  orvel::ReadPresets(ReadResource(u"OrvelPresets"), catalogue.presets);
  return catalogue;
}

std::string ShownName(const std::string& name) { return orvel::UTF16to8(orvel::ZString(name)); }

std::string ShortSectionName(const std::string& modelID) {
  return modelID.starts_with(kModelPrefix) ? modelID.substr(kModelPrefix.size()) : modelID;
}

}  // namespace orvelhost
