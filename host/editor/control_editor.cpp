#include "host/editor/control_editor.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/setting.h"

namespace orvelhost {
namespace {

using Section = boost::intrusive_ptr<orvel::SectionModelInterface>;

constexpr float kSwitchedOn = 0.5f;

std::string ShortName(const Section& section) { return ShortSectionName(section->GetName()); }

/// For one of the clips at least; a switch that cannot be read is none.
bool IsOn(const Section& section, int paramID) {
  orvel::modelutils::ValueSummary summary;
  const int status = orvel::modelutils::GetValueSummary(section, paramID, summary);
  return status != orvel::kStatus_Success || summary.greatest >= kSwitchedOn;
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
  const auto& clip = session.FirstSelected();
  if (!clip) return otherwise;
  const auto& sections = clip->AllSectionValues();
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

}  // namespace

std::string ShownNumber(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

struct ControlEditor::Parameter {
  Section section;
  orvel::ParamDefinition definition;
  std::string name;

  float Normalize(double value) const {
    if (!IsInRange(definition, value)) {
      throw EditError(name + " takes " + DescribeRange(section->GetName(), definition) + ", not " +
                      ShownNumber(value));
    }
    float normalized = 0.0f;
    section->ToNormalized(definition.id, static_cast<float>(value), normalized);
    return normalized;
  }
};

std::vector<ParameterState> ControlEditor::GetAll(const std::string& section) const {
  std::vector<ParameterState> states;
  std::string names;
  for (const Section& model : clips_.GetSections()) {
    names += (names.empty() ? "" : ", ") + ShortName(model);
    if (!section.empty() && ShortName(model) != section) continue;
    for (int index = 0; index < model->GetNumParams(); ++index) {
      states.push_back(Describe(clips_.GetSession(), model, model->GetParamDefinition(index)));
    }
  }
  if (states.empty()) {
    throw EditError("the mode has no section '" + section + "'; it has " + names);
  }
  return states;
}

ControlEditor::Parameter ControlEditor::Find(const std::string& name) const {
  for (const Section& model : clips_.GetSections()) {
    const std::string start = ShortName(model) + ".";
    for (int index = 0; index < model->GetNumParams(); ++index) {
      const orvel::ParamDefinition param = model->GetParamDefinition(index);
      if (start + param.name == name) return {model, param, name};
    }
  }
  throw EditError("no control is called '" + name + "'; show lists them");
}

ParameterState ControlEditor::Get(const std::string& name) const {
  const Parameter parameter = Find(name);
  return Describe(clips_.GetSession(), parameter.section, parameter.definition);
}

void ControlEditor::Drag(const std::string& name, const std::vector<double>& values) const {
  const Parameter parameter = Find(name);
  if (parameter.definition.HasFlag(orvel::kParamFlag_NotStored) &&
      !parameter.definition.HasFlag(orvel::kParamFlag_Trigger)) {
    throw EditError(name + " can only be read");
  }
  std::vector<float> places;
  places.reserve(values.size());
  for (const double value : values) places.push_back(parameter.Normalize(value));
  if (places.empty()) throw EditError("give a value");
  const auto action = orvel::CreateSetModelParamAction(
      parameter.section, parameter.definition.id, places.front(), orvel::UTF8to16("Set " + name));
  for (const float place : places) {
    orvel::ChangeActionParamValue(action, place);
    clips_.Execute(action);
  }
}

void ControlEditor::Offset(const std::string& name, double delta) const {
  const Parameter parameter = Find(name);
  const double range = static_cast<double>(parameter.definition.maxValue) -
                       static_cast<double>(parameter.definition.minValue);
  if (parameter.definition.HasFlag(orvel::kParamFlag_NotStored) ||
      parameter.definition.HasFlag(orvel::kParamFlag_TwoValued) || !(range > 0.0)) {
    throw EditError(name + " cannot be moved");
  }
  if (parameter.definition.HasFlag(orvel::kParamFlag_Stepped) && delta != std::floor(delta)) {
    throw EditError(name + " moves by whole steps, not by " + ShownNumber(delta));
  }
  const double offset = std::clamp(delta / range, -1.0, 1.0);
  clips_.Execute(orvel::CreateOffsetModelParamAction(parameter.section, parameter.definition.id,
                                                     static_cast<float>(offset),
                                                     orvel::UTF8to16("Move " + name)));
}

}  // namespace orvelhost
