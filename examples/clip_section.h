#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <boost/signals2/dummy_mutex.hpp>
#include <boost/signals2/signal_type.hpp>

#include "orvel/orvel.h"

namespace example {

/// What a clip keeps of a section. Section models come and go with the selection; this stays.
struct SectionState {
  std::vector<float> values;                ///< by parameter id, normalized: 0..1 over the range
  std::vector<std::vector<float>> effects;  ///< of each control, by effect parameter, 0..1
};

/// A section of one clip: keeps the values, leads them through the definition's mappings to the
/// parameters of the effects, and tells of changes. An unknown id is refused with status 1.
class ClipSection : public orvel::SectionModelInterface {
 public:
  /// A fresh `state` is filled with the defaults.
  ClipSection(const std::string& modeID,
              const std::shared_ptr<const orvel::SectionDefinition>& definition,
              const std::shared_ptr<SectionState>& state)
      : modeID_(modeID), definition_(definition), state_(state) {
    const auto& params = definition_->GetParamDefinitions();
    for (auto id = state_->values.size(); id < params.size(); ++id) {
      state_->values.push_back(orvel::modelutils::ToNormalized(
          params[id].minValue, params[id].maxValue, params[id].defaultValue));
    }
    heldBack_.resize(params.size());
    state_->effects.resize(definition_->GetControlDefinitions().size());
    for (int id = 0; id < GetNumParams(); ++id) ApplyToEffects(id);
  }

  int GetNumParams() const override { return static_cast<int>(state_->values.size()); }
  orvel::ParamDefinition GetParamDefinition(int id) override {
    return IsKnown(id) ? Definition(id) : orvel::ParamDefinition();
  }
  bool GetSectionDefinition(orvel::SectionDefinition& definition) const override {
    definition = *definition_;
    return true;
  }

  int SetParamNormalized(int id, float normalized) override {
    if (!IsKnown(id)) return kUnknownParameter;
    Store(id, normalized);
    Send();
    return orvel::kStatus_Success;
  }
  int SetParamsNormalized(const std::map<int, float>& values) override {
    for (const auto& [id, value] : values) {
      if (!IsKnown(id)) return kUnknownParameter;
    }
    for (const auto& [id, value] : values) Store(id, value);
    Send();
    return orvel::kStatus_Success;
  }
  int GetParamNormalized(int id, float& normalized) const override {
    if (!IsKnown(id)) return kUnknownParameter;
    normalized = Value(id);
    return orvel::kStatus_Success;
  }
  bool ToPhysical(int id, float normalized, float& physical) const override {
    if (!IsKnown(id)) return false;
    const auto& param = Definition(id);
    physical = orvel::modelutils::ToPhysical(param.minValue, param.maxValue, normalized);
    return true;
  }
  bool ToNormalized(int id, float physical, float& normalized) const override {
    if (!IsKnown(id)) return false;
    const auto& param = Definition(id);
    normalized = orvel::modelutils::ToNormalized(param.minValue, param.maxValue, physical);
    return true;
  }

  std::string GetName() override { return definition_->GetModelID(); }
  std::string GetAdjustmentsMode() override { return modeID_; }
  void SetActive(bool active) override { active_ = active; }
  bool IsActive() const override { return active_; }
  boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) override {
    return changed_.connect(slot);
  }
  void SuspendSignaling() override { ++suspendCount_; }
  void ResumeSignaling(bool sendSignals) override {
    if (suspendCount_ == 0 || --suspendCount_ > 0) return;
    if (!sendSignals) heldBack_.assign(heldBack_.size(), false);
    Send();
  }

 private:
  static constexpr int kUnknownParameter = 1;

  bool IsKnown(int id) const { return id >= 0 && id < GetNumParams(); }
  float Value(int id) const { return state_->values[static_cast<std::size_t>(id)]; }
  const orvel::ParamDefinition& Definition(int id) const {
    return definition_->GetParamDefinitions()[static_cast<std::size_t>(id)];
  }

  void Store(int id, float value) {
    if (std::exchange(state_->values[static_cast<std::size_t>(id)], value) == value) return;
    ApplyToEffects(id);
    heldBack_[static_cast<std::size_t>(id)] = true;
  }

  // A parameter moves the effect parameters that are mapped to it, and those that it bends.
  void ApplyToEffects(int id) {
    const auto& controls = definition_->GetControlDefinitions();
    for (std::size_t i = 0; i < controls.size(); ++i) {
      for (const auto& [mappedID, mappings] : controls[i].GetParameterMap()) {
        for (const auto& mapping : mappings) {
          const int argumentID =
              mapping.HasModifierFunction() ? mapping.GetModifier().GetParamID() : -1;
          if (id == mappedID || id == argumentID) {
            Apply(mapping, Value(mappedID), argumentID, state_->effects[i]);
          }
        }
      }
    }
  }
  void Apply(const orvel::ParameterMapping& mapping, float value, int argumentID,
             std::vector<float>& effect) const {
    if (argumentID >= 0) {
      orvel::ParameterMapping bent = mapping;
      bent.SetModifierValue(Value(argumentID));
      return Apply(bent, value, -1, effect);
    }
    const std::size_t index = mapping.GetParamIndex();
    if (effect.size() <= index) effect.resize(index + 1);
    effect[index] = mapping.FromNormalized(value);
  }

  void Send() {
    boost::intrusive_ptr<ClipSection> self;  // a listener may let go of it
    for (std::size_t id = 0; suspendCount_ == 0 && id < heldBack_.size(); ++id) {
      if (!heldBack_[id]) continue;
      self = this;
      heldBack_[id] = false;
      changed_(static_cast<int>(id), state_->values[id]);
    }
  }

  std::string modeID_;
  std::shared_ptr<const orvel::SectionDefinition> definition_;
  std::shared_ptr<SectionState> state_;
  std::vector<bool> heldBack_;  // changed, and not told yet
  unsigned suspendCount_ = 0;
  bool active_ = false;
  // Everything runs on the main thread: without a lock, a signal costs less.
  boost::signals2::signal_type<
      void(int, float), boost::signals2::keywords::mutex_type<boost::signals2::dummy_mutex>>::type
      changed_;
};

}  // namespace example
