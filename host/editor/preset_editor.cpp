#include "host/editor/preset_editor.h"

#include <algorithm>

#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

using orvel::UserPreset;

/// The values that the preset states itself: it may leave sections out, and the ends of their
/// lists.
orvel::UserPresetData KeepStated(const orvel::UserPresetData& preset, orvel::UserPresetData data) {
  std::erase_if(data.Models,
                [&preset](const auto& model) { return !preset.Models.contains(model.first); });
  for (auto& [modelID, values] : data.Models) {
    values.resize(std::min(values.size(), preset.Models.at(modelID).size()));
  }
  return data;
}

orvel::Guid CurrentTemplate(const std::string& mode) {
  return orvel::ConfigurationManager::Get()->GetCurrentConfigGuidForMode(mode);
}

}  // namespace

std::vector<UserPreset> PresetEditor::GetAll() const {
  const std::string mode = clips_.GetMode();
  std::vector<UserPreset> presets = clips_.GetStore().GetPresets(mode);
  const orvel::Guid config = CurrentTemplate(mode);
  std::erase_if(presets, [&](const auto& preset) { return preset.PresetData.Config != config; });
  return presets;
}

UserPreset PresetEditor::Find(const std::string& name, Capitals capitals) const {
  const std::string mode = clips_.GetMode();
  return clips_.GetStore().FindPreset({name, mode, CurrentTemplate(mode), capitals});
}

std::string PresetEditor::GetState() const {
  constexpr char kMixed[] = "(mixed)";
  const std::string mode = clips_.GetMode();
  orvel::Guid guid;
  UserPreset preset;
  orvel::UserPresetData data;
  const auto clips = clips_.GetSession().GetSelectedMixTypeClipModels();
  if (orvel::modelutils::GetUserPresetGuid(clips, guid) != 0 ||
      orvel::modelutils::GetUserPresetData(clips_.GetSections(), data) != 0) {
    return kMixed;
  }
  if (!clips_.GetStore().FindPreset(guid, data.Config, preset)) return "(Custom)";
  const auto handler = orvel::CreateUserPresetsHandler(mode);
  handler->Restore(preset, KeepStated(preset.PresetData, data));
  return orvel::UTF16to8(handler->GetDisplayName());
}

void PresetEditor::Apply(const std::string& name) const {
  const UserPreset preset = Find(name);
  clips_.Execute(orvel::CreateSetUserPresetAction(
      clips_.GetModel(), preset, orvel::UTF8to16("Preset " + ShownName(preset.Name))));
}

UserPreset PresetEditor::Save(const std::string& name) const {
  UserPreset preset;
  preset.Guid = orvel::Guid::CreateUnique();
  preset.Name = name;
  if (orvel::modelutils::GetUserPresetData(clips_.GetSections(), preset.PresetData) != 0) {
    throw EditError("the selected clips hold different values; select one");
  }
  orvel::Guid guid;
  UserPreset present;
  orvel::modelutils::GetUserPresetGuid(clips_.GetSession().GetSelectedMixTypeClipModels(), guid);
  if (clips_.GetStore().FindPreset(guid, preset.PresetData.Config, present) &&
      present.Name == name && !clips_.GetStore().IsFactory(present)) {
    preset.Guid = guid;
  }
  clips_.GetStore().Save(preset, false);
  clips_.Execute(orvel::CreateSetUserPresetAction(clips_.GetModel(), preset,
                                                  orvel::UTF8to16("Preset " + name)));
  return preset;
}

UserPreset PresetEditor::Remove(const std::string& name) const {
  const UserPreset preset = Find(name, Capitals::kAsWritten);
  clips_.GetStore().Remove(preset);
  return preset;
}

}  // namespace orvelhost
