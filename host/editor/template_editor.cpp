#include "host/editor/template_editor.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

#include "host/catalogue/mode_catalogue.h"

namespace orvelhost {
namespace {

using orvel::ConfigPreset;

/// A template and the mode's settings as they are under it.
struct TemplateState {
  ConfigPreset selected;
  orvel::ConfigPresetData settings;
};

/// Puts a template, with all of its settings, in the place of another.
class ChangeTemplateAction : public orvel::Action {
 public:
  ChangeTemplateAction(const boost::intrusive_ptr<orvel::ConfigPresetsHandler>& handler,
                       const boost::intrusive_ptr<orvel::OrvelModel>& model,
                       const ConfigPreset& selected, const std::string& name)
      : Action(true, true, orvel::UTF8to16(name)),
        handler_(handler),
        model_(model),
        before_{handler->GetSelectedPreset(), handler->GetWorkingData()},
        after_{selected, selected.PresetData} {}

 private:
  void RedoSelf() override { Put(after_); }
  void UndoSelf() override { Put(before_); }
  void Put(const TemplateState& state) {
    // That which a document brought along goes when another takes its place.
    const auto cache = orvel::ConfigurationManager::Get()->GetPresetsCache();
    ConfigPreset present;
    if (!cache->FindPreset(state.selected.Guid, present)) cache->AddTemporaryPreset(state.selected);
    handler_->Restore(state.selected, state.settings);
    model_->Refresh();  // the template has presets of its own, and be its settings the same
  }

  boost::intrusive_ptr<orvel::ConfigPresetsHandler> handler_;
  boost::intrusive_ptr<orvel::OrvelModel> model_;
  TemplateState before_;
  TemplateState after_;
};

/// The settings with one number changed, of the type that it has.
orvel::PropList ChangeSetting(orvel::PropList settings, const std::string& key,
                              const std::string& text) {
  const auto read = [&](auto& number) {
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (status != std::errc() || end != text.data() + text.size() ||
        !std::isfinite(static_cast<double>(number))) {
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

boost::intrusive_ptr<orvel::ConfigPresetsHandler> TemplateEditor::GetHandler() const {
  return orvel::ConfigurationManager::Get()->GetConfigPresetHandler(clips_.GetMode());
}

std::vector<ConfigPreset> TemplateEditor::GetAll() const {
  return clips_.GetStore().GetTemplates(clips_.GetMode());
}

std::string TemplateEditor::GetState() const {
  return orvel::UTF16to8(GetHandler()->GetDisplayName());
}

void TemplateEditor::Select(const std::string& name) const {
  const auto handler = GetHandler();
  const ConfigPreset selected = clips_.GetStore().FindTemplate({name, clips_.GetMode(), {}});
  if (selected.Guid == handler->GetSelectedGuid() && !handler->IsModified()) return;
  clips_.Execute(new ChangeTemplateAction(handler, clips_.GetModel(), selected,
                                          "Template " + ShownName(selected.Name)));
}

void TemplateEditor::Save(const std::string& name) const {
  const auto handler = GetHandler();
  ConfigPreset preset = handler->GetSelectedPreset();
  if (preset.Name != name || clips_.GetStore().IsFactory(preset))
    preset.Guid = orvel::Guid::CreateUnique();
  preset.Name = name;
  preset.PresetData = handler->GetWorkingData();
  clips_.GetLog().TakeTraces();
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
  const boost::intrusive_ptr<orvel::Action> step(
      new ChangeTemplateAction(handler, clips_.GetModel(), preset, "Save Template " + name));
  if (!cause.empty() || !handler->Save(preset)) {
    if (!cause.empty()) cause.insert(0, ": ");
    for (const auto& trace : clips_.GetLog().TakeTraces()) cause += ": " + trace;
    throw EditError("cannot save the template" + cause);
  }
  clips_.Execute(step);
}

void TemplateEditor::Configure(const std::string& section, const std::string& key,
                               const std::string& value) const {
  const std::string mode = clips_.GetMode();
  const std::string modelID = section.starts_with("model_") ? section : "model_" + section;
  auto& manager = *orvel::ConfigurationManager::Get();
  orvel::PropList settings;
  if (!manager.GetModelConfiguration(mode, modelID, settings)) {
    throw EditError("the mode " + mode + " configures no section '" + section + "'");
  }
  boost::intrusive_ptr<orvel::Action> action;
  manager.GetSetModelConfigurationAction(mode, modelID, ChangeSetting(settings, key, value),
                                         action);
  clips_.Execute(action);
}

void TemplateEditor::Revert() const {
  const auto handler = GetHandler();
  if (!handler->IsModified()) return;
  clips_.Execute(new ChangeTemplateAction(handler, clips_.GetModel(), handler->GetSelectedPreset(),
                                          "Revert Template"));
}

}  // namespace orvelhost
