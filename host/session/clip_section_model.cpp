#include "host/session/clip_section_model.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace orvelhost {
namespace {

bool IsReadBack(const orvel::ParamDefinition& param) {
  return param.HasFlag(orvel::kParamFlag_NotStored);
}

/// The mapping with the present value of the parameter that its modifier asks for.
float MapToEffect(orvel::ParameterMapping mapping, float normalized,
                  const std::vector<float>& values) {
  const int argumentID = mapping.GetModifier().GetParamID();
  if (argumentID >= 0 && static_cast<std::size_t>(argumentID) < values.size()) {
    mapping.SetModifierValue(values[static_cast<std::size_t>(argumentID)]);
  }
  return std::clamp(mapping.FromNormalized(normalized), 0.0f, 1.0f);
}

/// One model of each clip, and several of them as one.
void CreateSectionModel(const std::string& mode, const orvel::SectionDefinition& definition,
                        const boost::intrusive_ptr<orvel::SessionHandlerInterface>& /*session*/,
                        const orvel::MixTypeClipModels& clips, bool /*followsSelection*/,
                        boost::intrusive_ptr<orvel::SectionModelInterface>& model) {
  if (definition.GetModelID().empty()) {
    return;
  }
  const auto shared = std::make_shared<const orvel::SectionDefinition>(definition);
  std::vector<boost::intrusive_ptr<ClipSectionModel>> models;
  for (const auto& one : clips) {
    if (const boost::intrusive_ptr<Clip> clip(dynamic_cast<Clip*>(one.get())); clip) {
      models.emplace_back(new ClipSectionModel(mode, shared, clip));
      models.back()->RequestMeasurement();
    }
  }
  if (models.size() == 1) {
    model = models.front();
  } else if (!models.empty()) {
    const boost::intrusive_ptr<orvel::SectionMultiModel> all(new orvel::SectionMultiModel(mode));
    for (const auto& one : models) {
      all->AddModel(one);
    }
    model = all;
  }
}

}  // namespace

ClipSectionModel::ClipSectionModel(
    const std::string& mode, const std::shared_ptr<const orvel::SectionDefinition>& definition,
    const boost::intrusive_ptr<Clip>& clip)
    : mode_(mode),
      definition_(definition),
      clip_(clip),
      values_(clip->SectionValues(definition->GetModelID())),
      behaviour_(FindBehaviour(definition->GetModelID())) {
  const std::vector<orvel::ParamDefinition>& params = definition_->GetParamDefinitions();
  for (std::size_t index = values_.size(); index < params.size(); ++index) {
    const orvel::ParamDefinition& param = params[index];
    values_.push_back(std::clamp(
        orvel::modelutils::ToNormalized(param.minValue, param.maxValue, param.defaultValue), 0.0f,
        1.0f));
  }
  ApplyToClip();
  measured_ = clip->RegisterForMeasurements([this] {
    const boost::intrusive_ptr<ClipSectionModel> self(this);
    Follow();
    SendHeldBack();
  });
}

int ClipSectionModel::GetNumParams() const {
  return static_cast<int>(definition_->GetParamDefinitions().size());
}

const orvel::ParamDefinition* ClipSectionModel::Find(int paramID) const {
  return paramID >= 0 && paramID < GetNumParams()
             ? &definition_->GetParamDefinitions()[static_cast<std::size_t>(paramID)]
             : nullptr;
}

orvel::ParamDefinition ClipSectionModel::GetParamDefinition(int index) {
  const orvel::ParamDefinition* param = Find(index);
  return param == nullptr ? orvel::ParamDefinition() : *param;
}

bool ClipSectionModel::GetSectionDefinition(orvel::SectionDefinition& definition) const {
  definition = *definition_;
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
  bool triggered = false;
  for (const auto& [paramID, value] : values) {
    const orvel::ParamDefinition& param = *Find(paramID);
    float& stored = values_[static_cast<std::size_t>(paramID)];
    const float limited = std::clamp(value, 0.0f, 1.0f);
    if (param.HasFlag(orvel::kParamFlag_Trigger)) {
      triggered = triggered || limited >= 0.5f;
    } else if (!IsReadBack(param) && stored != limited) {
      stored = limited;
      heldBack_.insert(paramID);
    }
  }
  const boost::intrusive_ptr<ClipSectionModel> self(this);
  if (triggered) {
    clip_->ForgetMeasurement();
  }
  if (triggered || !heldBack_.empty()) {
    Follow();
    SendHeldBack();
    RequestMeasurement();
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

void ClipSectionModel::Follow() {
  const std::vector<float> before = values_;
  ApplyToClip();
  for (std::size_t index = 0; index < values_.size(); ++index) {
    if (values_[index] != before[index]) {
      heldBack_.insert(static_cast<int>(index));
    }
  }
}

void ClipSectionModel::ApplyToClip() {
  for (const orvel::ControlDefinition& control : definition_->GetControlDefinitions()) {
    ApplyControl(control);
  }
  SectionState state(*definition_, values_, *clip_);
  if (behaviour_ != nullptr && behaviour_->apply != nullptr) {
    behaviour_->apply(state);
  }
  for (const orvel::ControlDefinition& control : definition_->GetControlDefinitions()) {
    ReadBack(control);
  }
}

void ClipSectionModel::RequestMeasurement() {
  if (behaviour_ == nullptr || behaviour_->needs == nullptr) {
    return;
  }
  const MeasurementNeed need = behaviour_->needs(SectionState(*definition_, values_, *clip_));
  if (need != MeasurementNeed::kNothing) {
    clip_->RequestMeasurement(need == MeasurementNeed::kSoundAndRemix);
  }
}

void ClipSectionModel::ApplyControl(const orvel::ControlDefinition& control) {
  EffectSlot* slot = clip_->Chain().Slot(control.GetComponentID(), control.GetEffectOrderNumber());
  if (slot == nullptr) {
    return;
  }
  slot->enabled = SectionState(*definition_, values_, *clip_).IsOn(control.GetEnableParamID());
  for (const auto& [paramID, mappings] : control.GetParameterMap()) {
    const orvel::ParamDefinition* param = Find(paramID);
    if (param == nullptr || IsReadBack(*param)) {
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

void ClipSectionModel::ReadBack(const orvel::ControlDefinition& control) {
  const EffectSlot* slot =
      clip_->Chain().Slot(control.GetComponentID(), control.GetEffectOrderNumber());
  for (const auto& [paramID, mappings] : control.GetParameterMap()) {
    const orvel::ParamDefinition* param = Find(paramID);
    if (slot == nullptr || param == nullptr || !IsReadBack(*param)) {
      continue;
    }
    for (const orvel::ParameterMapping& mapping : mappings) {
      bool found = false;
      bool ambiguous = false;
      bool interpolated = false;
      if (mapping.GetParamIndex() < slot->parameters.size()) {
        const float value = mapping.ToNormalized(slot->parameters[mapping.GetParamIndex()], found,
                                                 ambiguous, interpolated);
        if (found) {
          values_[static_cast<std::size_t>(paramID)] = value;
        }
      }
    }
  }
}

void InstallSectionModels() { orvel::factory::SetGenericFactoryFunction(&CreateSectionModel); }

void UninstallSectionModels() { orvel::factory::SetGenericFactoryFunction({}); }

}  // namespace orvelhost
