#include "host/session/session_editor.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <system_error>

#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

using orvel::ConfigPreset;
using orvel::UserPreset;
using Section = boost::intrusive_ptr<orvel::SectionModelInterface>;

constexpr char kNoMode[] = "none";
constexpr float kSwitchedOn = 0.5f;

std::string ShortName(const Section& section) { return ShortSectionName(section->GetName()); }

bool IsOn(const Section& section, int paramID) {
  float value = 1.0f;
  section->GetParamNormalized(paramID, value);
  return value >= kSwitchedOn;
}

bool IsEnabled(const Section& section, int paramID) {
  orvel::SectionDefinition definition;
  section->GetSectionDefinition(definition);
  const orvel::ControlDefinition* control = nullptr;
  std::as_const(definition).GetParamTypeAndControl(paramID, &control);
  return IsOn(section, definition.GetEnableParam().id) &&
         (control == nullptr || IsOn(section, control->GetEnableParamID()));
}

double Physical(const Section& section, int paramID, float normalized) {
  float physical = 0.0f;
  section->ToPhysical(paramID, normalized, physical);
  return static_cast<double>(physical);
}

/// A model of several clips calls the one first that stands first in memory; people do not.
float GetFirst(const Session& session, const Section& section, int paramID, float otherwise) {
  const auto selected = session.GetSelection();
  if (selected.empty()) return otherwise;
  const auto& sections = session.GetClips()[selected.front()].clip->AllSectionValues();
  const auto values = sections.find(section->GetName());
  const auto place = static_cast<std::size_t>(paramID);
  return values != sections.end() && place < values->second.size() ? values->second[place]
                                                                   : otherwise;
}

ParameterState Describe(const Session& session, const Section& section,
                        const orvel::ParamDefinition& param) {
  orvel::modelutils::ValueSummary summary;
  orvel::modelutils::GetValueSummary(section, param.id, summary);
  if (summary.mixed) summary.first = GetFirst(session, section, param.id, summary.first);
  ParameterState state;
  state.name = ShortName(section) + "." + param.name;
  state.value = Physical(section, param.id, summary.first);
  state.mixed = summary.mixed;
  state.least = Physical(section, param.id, summary.least);
  state.greatest = Physical(section, param.id, summary.greatest);
  state.enabled = IsEnabled(section, param.id);
  state.min = static_cast<double>(param.minValue);
  state.max = static_cast<double>(param.maxValue);
  return state;
}

std::string StepName(const char* verb, const std::string& what) {
  return std::string(verb) + " " + what;
}

std::u16string Wide(const std::string& text) { return orvel::UTF8to16(text); }

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

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

/// The settings with one number changed, of the type that it has.
orvel::PropList ChangeSetting(orvel::PropList settings, const std::string& key,
                              const std::string& text) {
  const auto read = [&](auto& number) {
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (status != std::errc() || end != text.data() + text.size()) {
      throw EditError(key + " takes a number, not '" + text + "'");
    }
    settings.SetValue(key, number);
  };
  float number = 0.0f;
  std::uint32_t whole = 0;
  if (settings.GetValue(key, whole)) {
    read(whole);
  } else if (settings.GetValue(key, number)) {
    read(number);
  } else {
    std::string keys;
    for (const auto& [name, value] : settings) {
      if (value.index() < 2) keys += (keys.empty() ? "" : ", ") + name;  // the numbers
    }
    throw EditError("no number to set is called '" + key + "'; there is " +
                    (keys.empty() ? "none" : keys));
  }
  return settings;
}

}  // namespace

struct SessionEditor::Parameter {
  Section section;
  orvel::ParamDefinition definition;
  std::string name;

  float Normalize(double value) const {
    const auto single = static_cast<float>(value);
    if (!(single >= definition.minValue && single <= definition.maxValue) ||
        (definition.HasFlag(orvel::kParamFlag_TwoValued) && single != definition.minValue &&
         single != definition.maxValue)) {
      throw EditError(name + " takes " + Number(static_cast<double>(definition.minValue)) + " to " +
                      Number(static_cast<double>(definition.maxValue)) + ", not " + Number(value));
    }
    float normalized = 0.0f;
    section->ToNormalized(definition.id, single, normalized);
    return normalized;
  }
};

SessionEditor::SessionEditor(const Host& host) : host_(host), store_(host) {
  orvel::factory::CreateOrvelModel(model_);
  // Sections are built from their settings, so with other settings they are others.
  configured_ = orvel::ConfigurationManager::Get()->RegisterModelConfigurationDataChangedCallback(
      [this](const std::string&, const std::string&, const orvel::PropList&) {
        model_->Refresh();
      });
}

/// Lets the library announce what it put off.
void SessionEditor::Settle() { teskcore::threads::GetDefaultEventLoop()->Drain(); }

void SessionEditor::Execute(const boost::intrusive_ptr<orvel::Action>& action) {
  if (!orvel::ExecuteOrvelAction(action)) throw EditError("another change is under way");
  Settle();
}

void SessionEditor::RequireSelection() const {
  if (GetSession().GetSelectedMixTypeClipModels().empty()) {
    throw EditError("no clip is selected");
  }
}

orvel::OrvelModel::SectionModels SessionEditor::GetSections() const {
  GetMode();
  orvel::OrvelModel::SectionModels sections;
  model_->GetSectionModels(sections);
  return sections;
}

void SessionEditor::AddClips(const std::vector<std::filesystem::path>& files) {
  const std::size_t first = GetSession().GetClips().size() + 1;
  GetSession().AddClips(files);
  host_.GetUndoStack()->MarkModified();
  std::vector<std::size_t> added;
  for (std::size_t i = 0; i < files.size(); ++i) added.push_back(first + i);
  Select(added);
}

void SessionEditor::Select(const std::vector<std::size_t>& numbers) {
  std::vector<std::size_t> indices;
  for (const std::size_t number : numbers) {
    if (number < 1 || number > GetSession().GetClips().size()) {
      throw EditError("there is no clip " + std::to_string(number));
    }
    if (std::ranges::find(indices, number - 1) == indices.end()) indices.push_back(number - 1);
  }
  std::ranges::sort(indices);
  GetSession().Select(indices);
  Settle();
}

void SessionEditor::SelectAll() {
  std::vector<std::size_t> numbers;
  for (std::size_t i = 1; i <= GetSession().GetClips().size(); ++i) numbers.push_back(i);
  Select(numbers);
}

std::vector<std::size_t> SessionEditor::GetSelection() const {
  std::vector<std::size_t> numbers = GetSession().GetSelection();
  for (std::size_t& number : numbers) ++number;
  return numbers;
}

std::string SessionEditor::GetMode() const {
  RequireSelection();
  std::string mode;
  if (orvel::modelutils::GetAdjustmentsMode(GetSession().GetSelectedMixTypeClipModels(), mode) !=
      0) {
    throw EditError("the selected clips differ in their mode");
  }
  if (!IsMode(mode)) throw EditError("the selected clips have no mode; give them one with mode");
  return mode;
}

void SessionEditor::SetMode(const std::string& modeID) {
  RequireSelection();
  if (modeID == kNoMode) {
    Execute(orvel::CreateSetMixTypeAction(model_, orvel::kAdjustmentsModeUnknown, UserPreset(),
                                          u"Set Mode none"));
    return;
  }
  if (!IsMode(modeID)) {
    throw EditError("there is no mode '" + modeID + "', only " + ListModes() + " and none");
  }
  Execute(orvel::CreateSetMixTypeWithDefaultPresetAction(model_, modeID,
                                                         Wide(StepName("Set Mode", modeID))));
}

std::vector<UserPreset> SessionEditor::GetPresets() const {
  const std::string mode = GetMode();
  std::vector<UserPreset> presets = store_.GetPresets(mode);
  const orvel::Guid config = orvel::ConfigurationManager::Get()->GetCurrentConfigGuidForMode(mode);
  std::erase_if(presets, [&](const auto& preset) { return preset.PresetData.Config != config; });
  return presets;
}

UserPreset SessionEditor::FindPreset(const std::string& name) const {
  const std::string mode = GetMode();
  return store_.FindPreset(
      {name, mode, orvel::ConfigurationManager::Get()->GetCurrentConfigGuidForMode(mode)});
}

std::string SessionEditor::GetPresetState() const {
  constexpr char kMixed[] = "(mixed)";
  const std::string mode = GetMode();
  orvel::Guid guid;
  UserPreset preset;
  orvel::UserPresetData data;
  const auto clips = GetSession().GetSelectedMixTypeClipModels();
  if (orvel::modelutils::GetUserPresetGuid(clips, guid) != 0 ||
      orvel::modelutils::GetUserPresetData(GetSections(), data) != 0) {
    return kMixed;
  }
  if (!store_.FindPreset(guid, data.Config, preset)) return "(Custom)";
  const auto handler = orvel::CreateUserPresetsHandler(mode);
  handler->Restore(preset, KeepStated(preset.PresetData, data));
  return orvel::UTF16to8(handler->GetDisplayName());
}

void SessionEditor::ApplyPreset(const std::string& name) {
  const UserPreset preset = FindPreset(name);
  Execute(orvel::CreateSetUserPresetAction(model_, preset,
                                           Wide(StepName("Preset", ShownName(preset.Name)))));
}

UserPreset SessionEditor::SavePreset(const std::string& name) {
  UserPreset preset;
  preset.Guid = orvel::Guid::CreateUnique();
  preset.Name = name;
  preset.Type = orvel::UserPresetData::kType;
  if (orvel::modelutils::GetUserPresetData(GetSections(), preset.PresetData) != 0) {
    throw EditError("the selected clips hold different values; select one");
  }
  orvel::Guid guid;
  UserPreset present;
  orvel::modelutils::GetUserPresetGuid(GetSession().GetSelectedMixTypeClipModels(), guid);
  if (store_.FindPreset(guid, preset.PresetData.Config, present) && present.Name == name &&
      !store_.IsFactory(present)) {
    preset.Guid = guid;
  }
  store_.Save(preset, false);
  Execute(orvel::CreateSetUserPresetAction(model_, preset, Wide(StepName("Preset", name))));
  return preset;
}

UserPreset SessionEditor::RemovePreset(const std::string& name) {
  const UserPreset preset = FindPreset(name);
  store_.Remove(preset);
  return preset;
}

boost::intrusive_ptr<orvel::ConfigPresetsHandler> SessionEditor::GetTemplateHandler() const {
  return orvel::ConfigurationManager::Get()->GetConfigPresetHandler(GetMode());
}

std::vector<ConfigPreset> SessionEditor::GetTemplates() const {
  return store_.GetTemplates(GetMode());
}

std::string SessionEditor::GetTemplateState() const {
  return orvel::UTF16to8(GetTemplateHandler()->GetDisplayName());
}

void SessionEditor::SelectTemplate(const std::string& name) {
  const auto handler = GetTemplateHandler();
  const ConfigPreset configuration = store_.FindTemplate({name, GetMode(), {}});
  if (!handler->Select(configuration.Guid)) throw EditError("the template cannot be selected");
  host_.GetUndoStack()->MarkModified();
  model_->Refresh();
  Settle();
}

void SessionEditor::SaveTemplate(const std::string& name) {
  const auto handler = GetTemplateHandler();
  ConfigPreset preset = handler->GetSelectedPreset();
  if (preset.Name != name || store_.IsFactory(preset)) preset.Guid = orvel::Guid::CreateUnique();
  preset.Name = name;
  preset.PresetData = handler->GetWorkingData();
  host_.GetLog().TakeTraces();
  std::string cause;
  switch (handler->CheckPresetName(name, preset.Guid)) {
    case orvel::PresetNameStatus::kUsable:
      break;
    case orvel::PresetNameStatus::kReserved:
      throw EditError("the name '" + name + "' is reserved");
    case orvel::PresetNameStatus::kTaken:
      throw EditError("there is a template of this name");
    case orvel::PresetNameStatus::kNotAFileName:
      cause = "the name cannot be that of a folder";
  }
  if (!cause.empty() || !handler->Save(preset)) {
    for (const auto& trace : host_.GetLog().TakeTraces()) {
      cause += (cause.empty() ? "" : ": ") + trace;
    }
    throw EditError("cannot save the template: " + cause);
  }
  host_.GetUndoStack()->MarkModified();
  model_->Refresh();
  Settle();
}

void SessionEditor::Configure(const std::string& section, const std::string& key,
                              const std::string& value) {
  const std::string mode = GetMode();
  const std::string modelID = section.starts_with("model_") ? section : "model_" + section;
  auto& manager = *orvel::ConfigurationManager::Get();
  orvel::PropList settings;
  if (!manager.GetModelConfiguration(mode, modelID, settings)) {
    throw EditError("the mode " + mode + " configures no section '" + section + "'");
  }
  boost::intrusive_ptr<orvel::Action> action;
  manager.GetSetModelConfigurationAction(mode, modelID, ChangeSetting(settings, key, value),
                                         action);
  Execute(action);
}

void SessionEditor::Revert() {
  orvel::ConfigurationManager::Get()->RevertCurrentDirtyConfigForMode(GetMode());
  host_.GetUndoStack()->MarkModified();
  Settle();
}

std::vector<ParameterState> SessionEditor::GetParameters(const std::string& section) const {
  std::vector<ParameterState> states;
  std::string names;
  for (const Section& model : GetSections()) {
    names += (names.empty() ? "" : ", ") + ShortName(model);
    if (!section.empty() && ShortName(model) != section) continue;
    for (int index = 0; index < model->GetNumParams(); ++index) {
      states.push_back(Describe(GetSession(), model, model->GetParamDefinition(index)));
    }
  }
  if (states.empty()) {
    throw EditError("the mode has no section '" + section + "'; it has " + names);
  }
  return states;
}

SessionEditor::Parameter SessionEditor::FindParameter(const std::string& name) const {
  for (const Section& model : GetSections()) {
    const std::string start = ShortName(model) + ".";
    for (int index = 0; index < model->GetNumParams(); ++index) {
      const orvel::ParamDefinition param = model->GetParamDefinition(index);
      if (start + param.name == name) return {model, param, name};
    }
  }
  throw EditError("no control is called '" + name + "'; show lists them");
}

ParameterState SessionEditor::GetParameter(const std::string& name) const {
  const Parameter parameter = FindParameter(name);
  return Describe(GetSession(), parameter.section, parameter.definition);
}

void SessionEditor::Set(const std::string& name, double value) { Drag(name, {value}); }

void SessionEditor::Drag(const std::string& name, const std::vector<double>& values) {
  const Parameter parameter = FindParameter(name);
  if (parameter.definition.HasFlag(orvel::kParamFlag_NotStored) &&
      !parameter.definition.HasFlag(orvel::kParamFlag_Trigger)) {
    throw EditError(name + " can only be read");
  }
  std::vector<float> places;
  places.reserve(values.size());
  for (const double value : values) places.push_back(parameter.Normalize(value));
  if (places.empty()) throw EditError("give a value");
  const auto action = orvel::CreateSetModelParamAction(parameter.section, parameter.definition.id,
                                                       places.front(), Wide(StepName("Set", name)));
  for (const float place : places) {
    orvel::ChangeActionParamValue(action, place);
    Execute(action);
  }
}

void SessionEditor::Offset(const std::string& name, double delta) {
  const Parameter parameter = FindParameter(name);
  const double range = static_cast<double>(parameter.definition.maxValue) -
                       static_cast<double>(parameter.definition.minValue);
  if (parameter.definition.HasFlag(orvel::kParamFlag_NotStored) || !(range > 0.0)) {
    throw EditError(name + " cannot be moved");
  }
  const double offset = std::clamp(delta / range, -1.0, 1.0);
  Execute(orvel::CreateOffsetModelParamAction(parameter.section, parameter.definition.id,
                                              static_cast<float>(offset),
                                              Wide(StepName("Move", name))));
}

std::string SessionEditor::Undo() {
  const auto names = GetUndoStack().GetStepNames();
  if (!host_.GetUndoStack()->Undo()) throw EditError("there is nothing to undo");
  Settle();
  return names[GetUndoStack().GetDoneCount()];
}

std::string SessionEditor::Redo() {
  const auto names = GetUndoStack().GetStepNames();
  if (!host_.GetUndoStack()->Redo()) throw EditError("there is nothing to redo");
  Settle();
  return names[GetUndoStack().GetDoneCount() - 1];
}

void SessionEditor::Save(const std::filesystem::path& file) {
  WriteSession(GetSession().GetDocument(), file);
  host_.GetUndoStack()->MarkSaved();
}

void SessionEditor::Open(const std::filesystem::path& file) {
  const SessionDocument document = ReadSession(file);
  host_.GetUndoStack()->Clear();
  GetSession().SetDocument(document);
  Settle();
}

}  // namespace orvelhost
