// The smallest host: one clip whose effects are just lists of parameters. It shows what a host
// brings (a session and section models) and what it gets (definitions, mappings, conversions), and
// prints what a control does to an effect.

#include <iostream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "orvel/orvel.h"

namespace {

// A section of one clip. A control's value goes through the definition's mappings to the effect's
// parameters.
class ClipSection : public orvel::SectionModelInterface {
 public:
  using EffectParams = std::map<unsigned, float>;

  explicit ClipSection(const orvel::SectionDefinition& definition) : definition_(definition) {
    for (const auto& param : definition.GetParamDefinitions()) {
      values_.push_back(
          orvel::modelutils::ToNormalized(param.minValue, param.maxValue, param.defaultValue));
    }
  }

  int GetNumParams() const override { return static_cast<int>(values_.size()); }
  orvel::ParamDefinition GetParamDefinition(int index) override { return Definition(index); }
  bool GetSectionDefinition(orvel::SectionDefinition& definition) const override {
    definition = definition_;
    return true;
  }

  int SetParamNormalized(int id, float normalized) override {
    return SetParamsNormalized({{id, normalized}});
  }
  int SetParamsNormalized(const std::map<int, float>& values) override {
    for (const auto& [id, value] : values) {
      if (!IsKnown(id)) return kUnknownParameter;
    }
    for (const auto& [id, value] : values) {
      values_[static_cast<std::size_t>(id)] = value;
      ApplyToEffects(id, value);
      if (suspended_ == 0) {
        changed_(id, value);
      } else {
        heldBack_.insert(id);
      }
    }
    return orvel::kStatus_Success;
  }
  int GetParamNormalized(int id, float& normalized) const override {
    if (!IsKnown(id)) return kUnknownParameter;
    normalized = values_[static_cast<std::size_t>(id)];
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

  std::string GetName() override { return definition_.GetModelID(); }
  boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) override {
    return changed_.connect(slot);
  }
  void SetActive(bool active) override { active_ = active; }
  bool IsActive() const override { return active_; }
  std::string GetAdjustmentsMode() override { return "dialog"; }
  void SuspendSignaling() override { ++suspended_; }
  void ResumeSignaling(bool sendSignals) override {
    if (suspended_ == 0 || --suspended_ > 0) return;
    const std::set<int> ids = std::exchange(heldBack_, {});
    if (!sendSignals) return;
    for (const int id : ids) changed_(id, values_[static_cast<std::size_t>(id)]);
  }

  const EffectParams& GetEffect(const std::u16string& componentID) { return effects_[componentID]; }

 private:
  static constexpr int kUnknownParameter = 1;

  bool IsKnown(int id) const { return id >= 0 && id < GetNumParams(); }
  const orvel::ParamDefinition& Definition(int id) const {
    return definition_.GetParamDefinitions()[static_cast<std::size_t>(id)];
  }
  void ApplyToEffects(int id, float value) {
    for (const auto& control : definition_.GetControlDefinitions()) {
      for (const auto& mapping : control.GetParameterMappings(id)) {
        effects_[control.GetComponentID()][mapping.GetParamIndex()] = mapping.FromNormalized(value);
      }
    }
  }

  orvel::SectionDefinition definition_;
  std::vector<float> values_;
  std::map<std::u16string, EffectParams> effects_;
  std::set<int> heldBack_;
  ChangeSignal changed_;
  unsigned suspended_ = 0;
  bool active_ = false;
};

}  // namespace

int main() {
  // 1. Say how section models are made.
  orvel::factory::SetGenericFactoryFunction(
      [](const std::string&, const orvel::SectionDefinition& definition, const auto&, const auto&,
         bool, boost::intrusive_ptr<orvel::SectionModelInterface>& model) {
        model = new ClipSection(definition);
      });

  // 2. Start the library. An editor hands over its session and its undo stack here.
  orvel::Initialize(nullptr, nullptr, {});

  // 3. Ask for a section, with the range of its slider set by a configuration.
  orvel::PropList configuration;
  configuration.SetValue(orvel::SectionVolumeConfig::kConfig_MinGain, -24.0f);
  boost::intrusive_ptr<orvel::SectionModelInterface> volume;
  if (!orvel::factory::CreateModelForClips("model_volume", "dialog", configuration, nullptr, {},
                                           false, volume)) {
    return 1;
  }
  const boost::signals2::scoped_connection connection =
      volume->RegisterForModelChanges([&](int id, float value) {
        float physical = 0.0f;
        volume->ToPhysical(id, value, physical);
        std::cout << volume->GetParamDefinition(id).name << " is now " << physical << " dB\n";
      });

  // 4. Move the control. The limiter's parameters follow.
  float normalized = 0.0f;
  volume->ToNormalized(orvel::SectionModelVolumeParams::kVolume, -6.0f, normalized);
  volume->SetParamNormalized(orvel::SectionModelVolumeParams::kVolume, normalized);
  auto& section = dynamic_cast<ClipSection&>(*volume);
  for (const auto& [index, value] : section.GetEffect(orvel::kHardLimiterID)) {
    std::cout << "limiter parameter " << index << " = " << value << '\n';
  }

  // 5. Keep the values as a preset would.
  std::vector<float> stored;
  orvel::modelutils::GetParamList(volume, stored);
  std::cout << "stored values:";
  for (const float value : stored) std::cout << ' ' << value;
  std::cout << '\n';

  orvel::Terminate();
  return 0;
}
