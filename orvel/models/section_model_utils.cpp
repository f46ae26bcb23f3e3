#include "orvel/models/section_model_utils.h"

#include <optional>
#include <utility>

namespace orvel::modelutils {
namespace {

constexpr float kSwitchedOn = 0.5f;

bool IsStored(const ParamDefinition& definition) {
  return !definition.HasFlag(kParamFlag_NotStored);
}

bool IsSwitchedOff(const SectionModelInterface& model) {
  SectionDefinition definition;
  if (!model.GetSectionDefinition(definition)) return false;
  float enabled = 0.0f;
  const int status = model.GetParamNormalized(definition.GetEnableParam().id, enabled);
  return status == kStatus_Success && enabled < kSwitchedOn;
}

bool ReadPhysical(const SectionModelInterface& model, int index, float& physical) {
  float normalized = -1.0f;
  const int status = model.GetParamNormalized(index, normalized);
  if (status != kStatus_Success && status != kStatus_Tolerated) return false;
  float converted = 0.0f;
  physical = model.ToPhysical(index, normalized, converted) ? converted : 0.0f;
  return true;
}

bool Write(const boost::intrusive_ptr<SectionModelInterface>& model,
           const std::vector<float>& values) {
  std::map<int, float> map;
  if (!GetParamIdValueMap(model, values, map)) return false;
  return map.empty() || model->SetParamsNormalized(map) == kStatus_Success;
}

}  // namespace

bool GetParamList(SectionModelInterface& model, std::vector<float>& values) {
  std::vector<float> list;
  std::optional<bool> isOff;  // asked once: it takes a copy of the section's definition
  for (int index = 0; index < model.GetNumParams(); ++index) {
    const ParamDefinition definition = model.GetParamDefinition(index);
    if (!IsStored(definition)) continue;
    float value = definition.defaultValue;
    const bool mayTakeDefault = definition.HasFlag(kParamFlag_DefaultWhenOff);
    if (mayTakeDefault && !isOff) isOff = IsSwitchedOff(model);
    const bool takesDefault = mayTakeDefault && isOff.value_or(false);
    if (!takesDefault && !ReadPhysical(model, index, value)) return false;
    list.push_back(value);
  }
  values = std::move(list);
  return true;
}

bool GetParamList(const boost::intrusive_ptr<SectionModelInterface>& model,
                  std::vector<float>& values) {
  return model && GetParamList(*model, values);
}

bool SetParamList(const boost::intrusive_ptr<SectionModelInterface>& model,
                  const std::vector<float>& values) {
  if (!model) return false;
  std::vector<float> saved;  // stays empty when it cannot be read, and then puts nothing back
  GetParamList(*model, saved);
  if (Write(model, values)) return true;
  // A model that refuses every write refuses this one too; trying again would never end.
  Write(model, saved);
  return false;
}

bool GetParamIdValueMap(const boost::intrusive_ptr<SectionModelInterface>& model,
                        const std::vector<float>& values, std::map<int, float>& map) {
  if (!model) return false;
  auto value = values.begin();
  for (int index = 0; index < model->GetNumParams() && value != values.end(); ++index) {
    if (!IsStored(model->GetParamDefinition(index))) continue;
    float normalized = 0.0f;
    const bool converted = model->ToNormalized(index, *value, normalized);
    map.try_emplace(index, normalized);
    if (!converted) return false;
    ++value;
  }
  return true;
}

void GetDefaultModelParams(const boost::intrusive_ptr<SectionModelInterface>& model,
                           std::map<int, float>& map) {
  if (!model) return;
  for (int index = 0; index < model->GetNumParams(); ++index) {
    const ParamDefinition definition = model->GetParamDefinition(index);
    if (!IsStored(definition)) continue;
    float normalized = 0.0f;
    // A failing conversion leaves 0, which is then the value to store.
    static_cast<void>(model->ToNormalized(index, definition.defaultValue, normalized));
    map[index] = normalized;
  }
}

}  // namespace orvel::modelutils
