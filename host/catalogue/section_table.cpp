#include "host/catalogue/section_table.h"

#include <cstdio>

#include "host/catalogue/json_values.h"
#include "host/catalogue/mode_catalogue.h"
#include "host/catalogue/setting.h"
#include "host/effects/effect_catalogue.h"

namespace orvelhost {
namespace {

using teskcore::serialization::JSONValue;

constexpr std::array<float, 3> kPlaces = {0.0f, 0.5f, 1.0f};

std::string EffectName(const orvel::ControlDefinition& control) {
  const EffectDescription* effect = FindEffect(control.GetComponentID());
  return effect == nullptr ? orvel::UTF16to8(control.GetComponentID()) : effect->name;
}

EffectRow DescribeEffectParameter(const orvel::ControlDefinition& control, unsigned index) {
  EffectRow row;
  row.effect = EffectName(control);
  row.order = control.GetEffectOrderNumber();
  row.index = index;
  const EffectDescription* effect = FindEffect(control.GetComponentID());
  if (effect != nullptr && index < effect->parameters.size()) {
    row.parameter = effect->parameters[index].name;
    row.unit = effect->parameters[index].unit;
  }
  return row;
}

double ToPhysical(const orvel::ControlDefinition& control, unsigned index, float normalized) {
  const EffectDescription* effect = FindEffect(control.GetComponentID());
  return effect != nullptr && index < effect->parameters.size()
             ? ToEffectScale(effect->parameters[index], normalized)
             : static_cast<double>(normalized);
}

float DefaultPlace(const std::vector<orvel::ParamDefinition>& params, int paramID) {
  if (paramID < 0 || static_cast<std::size_t>(paramID) >= params.size()) return 1.0f;
  const auto& param = params[static_cast<std::size_t>(paramID)];
  return orvel::modelutils::ToNormalized(param.minValue, param.maxValue, param.defaultValue);
}

// What `mapping` of `mappedID` gives while `paramID`, which is the mapped parameter or its
// modifier's argument, sweeps.
EffectRow Sweep(const orvel::ControlDefinition& control, orvel::ParameterMapping mapping,
                int mappedID, int paramID, const std::vector<orvel::ParamDefinition>& params) {
  EffectRow row = DescribeEffectParameter(control, mapping.GetParamIndex());
  const int argumentID = mapping.GetModifier().GetParamID();
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    mapping.SetModifierValue(argumentID == paramID ? kPlaces[i] : DefaultPlace(params, argumentID));
    const float place = mappedID == paramID ? kPlaces[i] : DefaultPlace(params, mappedID);
    row.values[i] = ToPhysical(control, row.index, mapping.FromNormalized(place));
  }
  return row;
}

ParameterRow DescribeParameter(const orvel::SectionDefinition& definition,
                               const orvel::ParamDefinition& param) {
  const auto& params = definition.GetParamDefinitions();
  ParameterRow row{param, {}, {}};
  for (const auto& control : definition.GetControlDefinitions()) {
    if (control.GetEnableParamID() == param.id) row.drives = EffectName(control);
    for (const auto& [mappedID, mappings] : control.GetParameterMap()) {
      for (const auto& mapping : mappings) {
        if (mappedID == param.id || mapping.GetModifier().GetParamID() == param.id) {
          row.effects.push_back(Sweep(control, mapping, mappedID, param.id, params));
        }
      }
    }
  }
  return row;
}

std::string Format(const char* format, auto... values) {
  char text[256];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

JSONValue EffectToJSON(const EffectRow& row) {
  return MakeObject({{"effect", row.effect},
                     {"order", std::int64_t{row.order}},
                     {"index", std::int64_t{row.index}},
                     {"parameter", row.parameter},
                     {"unit", row.unit},
                     {"values", MakeArray(row.values)}});
}

JSONValue ParameterToJSON(const ParameterRow& row) {
  const orvel::ParamDefinition& param = row.definition;
  JSONValue object = MakeObject({{"name", param.name},
                                 {"min", static_cast<double>(param.minValue)},
                                 {"max", static_cast<double>(param.maxValue)},
                                 {"two_valued", param.HasFlag(orvel::kParamFlag_TwoValued)},
                                 {"default", static_cast<double>(param.defaultValue)},
                                 {"read_only", param.HasFlag(orvel::kParamFlag_NotStored)},
                                 {"effects", MakeArray(row.effects, &EffectToJSON)}});
  if (!row.drives.empty()) teskcore::serialization::AddToObject(object, "switches", row.drives);
  return object;
}

}  // namespace

SectionTable MakeSectionTable(const orvel::SectionDefinition& definition) {
  SectionTable table{definition.GetModelID(), orvel::UTF16to8(definition.GetLocalizedName()), {}};
  for (const auto& param : definition.GetParamDefinitions()) {
    table.parameters.push_back(DescribeParameter(definition, param));
  }
  return table;
}

std::string ToText(const SectionTable& table) {
  const std::string section = ShortSectionName(table.modelID);
  std::string text = table.name + "\n";
  for (const auto& row : table.parameters) {
    const std::string name = section + "." + row.definition.name;
    text += Format("  %-38s %s, %g at first", name.c_str(),
                   DescribeRange(table.modelID, row.definition).c_str(),
                   static_cast<double>(row.definition.defaultValue));
    if (row.definition.HasFlag(orvel::kParamFlag_NotStored)) text += ", read only";
    if (!row.drives.empty()) text += ", switches " + row.drives;
    text += "\n";
    if (!row.effects.empty()) {
      text += Format("      %-34s %12s %12s %12s\n", "", "least", "middle", "greatest");
    }
    for (const auto& effect : row.effects) {
      const std::string parameter = effect.effect + ": " + effect.parameter;
      text += Format("      %-34s %12.5g %12.5g %12.5g %s\n", parameter.c_str(), effect.values[0],
                     effect.values[1], effect.values[2], effect.unit.c_str());
    }
  }
  return text;
}

JSONValue ToJSON(const SectionTable& table) {
  return MakeObject({{"model", table.modelID},
                     {"section", ShortSectionName(table.modelID)},
                     {"name", table.name},
                     {"parameters", MakeArray(table.parameters, &ParameterToJSON)}});
}

}  // namespace orvelhost
