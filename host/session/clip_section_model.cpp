#include "host/session/clip_section_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvelhost {
namespace {

constexpr const char* kPanModelID = "model_pan";
constexpr float kSwitchedOn = 0.5f;  // a switch counts as on from here up

/// The mapping with the present value of the parameter that its modifier asks for.
float MapToEffect(orvel::ParameterMapping mapping, float normalized,
                  const std::vector<float>& values) {
  const int argumentID = mapping.GetModifier().GetParamID();
  if (argumentID >= 0 && static_cast<std::size_t>(argumentID) < values.size()) {
    mapping.SetModifierValue(values[static_cast<std::size_t>(argumentID)]);
  }
  return std::clamp(mapping.FromNormalized(normalized), 0.0f, 1.0f);
}

void CreateSectionModel(const std::string& mode, const orvel::SectionDefinition& definition,
                        const boost::intrusive_ptr<orvel::SessionHandlerInterface>& /*session*/,
                        const orvel::MixTypeClipModels& clips, bool /*followsSelection*/,
                        boost::intrusive_ptr<orvel::SectionModelInterface>& model) {
  const boost::intrusive_ptr<Clip> clip(clips.size() == 1 ? dynamic_cast<Clip*>(clips.front().get())
                                                          : nullptr);
  if (clip && !definition.GetModelID().empty()) {
    model = new ClipSectionModel(mode, definition, clip);
  }
}

}  // namespace

ClipSectionModel::ClipSectionModel(const std::string& mode,
                                   const orvel::SectionDefinition& definition,
                                   const boost::intrusive_ptr<Clip>& clip)
    : mode_(mode),
      definition_(definition),
      clip_(clip),
      values_(clip->SectionValues(definition.GetModelID())) {
  const std::vector<orvel::ParamDefinition>& params = definition_.GetParamDefinitions();
  for (std::size_t index = values_.size(); index < params.size(); ++index) {
    const orvel::ParamDefinition& param = params[index];
    values_.push_back(std::clamp(
        orvel::modelutils::ToNormalized(param.minValue, param.maxValue, param.defaultValue), 0.0f,
        1.0f));
    if (IsDecidedByClip(param.id)) {
      values_.back() = clip->ChannelCount() > 2 ? 1.0f : 0.0f;
    }
  }
  ApplyToClip();
}

int ClipSectionModel::GetNumParams() const {
  return static_cast<int>(definition_.GetParamDefinitions().size());
}

const orvel::ParamDefinition* ClipSectionModel::Find(int paramID) const {
  return paramID >= 0 && paramID < GetNumParams()
             ? &definition_.GetParamDefinitions()[static_cast<std::size_t>(paramID)]
             : nullptr;
}

orvel::ParamDefinition ClipSectionModel::GetParamDefinition(int index) {
  const orvel::ParamDefinition* param = Find(index);
  return param == nullptr ? orvel::ParamDefinition() : *param;
}

bool ClipSectionModel::GetSectionDefinition(orvel::SectionDefinition& definition) const {
  definition = definition_;
  return true;
}

int ClipSectionModel::SetParamNormalized(int paramID, float normalized) {
  return SetParamsNormalized({{paramID, normalized}});
}

int ClipSectionModel::SetParamsNormalized(const std::map<int, float>& values) {
  for (const auto& [paramID, value] : values) {
    if (Find(paramID) == nullptr) {
      return kStatus_UnknownParam;
    }
    if (!std::isfinite(value)) {
      return kStatus_NotFinite;
    }
  }
  std::set<int> changed;
  for (const auto& [paramID, value] : values) {
    float& stored = values_[static_cast<std::size_t>(paramID)];
    const float limited = std::clamp(value, 0.0f, 1.0f);
    if (!IsDecidedByClip(paramID) && stored != limited) {
      stored = limited;
      changed.insert(paramID);
    }
  }
  if (!changed.empty()) {
    ApplyToClip();
    heldBack_.merge(changed);
    SendHeldBack();
  }
  return orvel::kStatus_Success;
}

int ClipSectionModel::GetParamNormalized(int paramID, float& normalized) const {
  if (Find(paramID) == nullptr) {
    return kStatus_UnknownParam;
  }
  normalized = values_[static_cast<std::size_t>(paramID)];
  return orvel::kStatus_Success;
}

bool ClipSectionModel::ToPhysical(int paramID, float normalized, float& physical) const {
  const orvel::ParamDefinition* param = Find(paramID);
  if (param == nullptr) {
    return false;
  }
  physical = orvel::modelutils::ToPhysical(param->minValue, param->maxValue, normalized);
  return true;
}

bool ClipSectionModel::ToNormalized(int paramID, float physical, float& normalized) const {
  const orvel::ParamDefinition* param = Find(paramID);
  if (param == nullptr) {
    return false;
  }
  normalized = orvel::modelutils::ToNormalized(param->minValue, param->maxValue, physical);
  return true;
}

boost::signals2::connection ClipSectionModel::RegisterForModelChanges(
    const ChangeSignal::slot_type& slot) {
  return changed_.connect(slot);
}

void ClipSectionModel::ResumeSignaling(bool sendSignals) {
  if (suspendCount_ == 0 || --suspendCount_ > 0) {
    return;
  }
  if (sendSignals) {
    SendHeldBack();
  } else {
    heldBack_.clear();
  }
}

void ClipSectionModel::SendHeldBack() {
  // A listener may let go of the model, suspend it or write to it.
  const boost::intrusive_ptr<ClipSectionModel> self(this);
  while (suspendCount_ == 0 && !heldBack_.empty()) {
    const int paramID = *heldBack_.begin();
    heldBack_.erase(heldBack_.begin());
    changed_(paramID, values_[static_cast<std::size_t>(paramID)]);
  }
}

bool ClipSectionModel::IsDecidedByClip(int paramID) const {
  return definition_.GetModelID() == kPanModelID &&
         paramID == orvel::SectionModelPanParams::kPanNotSupported;
}

bool ClipSectionModel::IsOn(int paramID) const {
  return Find(paramID) != nullptr && values_[static_cast<std::size_t>(paramID)] >= kSwitchedOn;
}

void ClipSectionModel::ApplyToClip() {
  for (const orvel::ControlDefinition& control : definition_.GetControlDefinitions()) {
    ApplyControl(control);
  }
  if (definition_.GetModelID() == kPanModelID) {
    constexpr int kPan = orvel::SectionModelPanParams::kPan;
    float pan = 0.0f;
    ToPhysical(kPan, values_[kPan], pan);
    const bool on = IsOn(orvel::SectionModelPanParams::kEnabled);
    clip_->Chain().SetPan(on ? static_cast<double>(pan / Find(kPan)->maxValue) : 0.0);
  }
}

void ClipSectionModel::ApplyControl(const orvel::ControlDefinition& control) {
  EffectSlot* slot = clip_->Chain().Slot(control.GetComponentID(), control.GetEffectOrderNumber());
  if (slot == nullptr) {
    return;
  }
  slot->enabled = IsOn(definition_.GetEnableParam().id) && IsOn(control.GetEnableParamID());
  for (const auto& [paramID, mappings] : control.GetParameterMap()) {
    if (Find(paramID) == nullptr) {
      continue;
    }
    for (const orvel::ParameterMapping& mapping : mappings) {
      if (mapping.GetParamIndex() < slot->parameters.size()) {
        slot->parameters[mapping.GetParamIndex()] =
            MapToEffect(mapping, values_[static_cast<std::size_t>(paramID)], values_);
      }
    }
  }
}

void InstallSectionModels() { orvel::factory::SetGenericFactoryFunction(&CreateSectionModel); }

void UninstallSectionModels() { orvel::factory::SetGenericFactoryFunction({}); }

}  // namespace orvelhost
