#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orvel/definitions/normalized_value.h"
#include "orvel/models/section_model_interface.h"

namespace orvel::test {

/// A section model that keeps its values in a list and can be told to fail.
class FakeSectionModel : public SectionModelInterface {
 public:
  explicit FakeSectionModel(std::vector<ParamDefinition> params)
      : definition("model_fake", u"Fake", PropList(), params, {}, "FakeSection"),
        values(params.size(), 0.0f) {
    for (std::size_t i = 0; i < params.size(); ++i) {
      values[i] =
          modelutils::ToNormalized(params[i].minValue, params[i].maxValue, params[i].defaultValue);
    }
  }

  int GetNumParams() const override { return static_cast<int>(Params().size()); }
  ParamDefinition GetParamDefinition(int index) override { return Param(index); }
  bool GetSectionDefinition(SectionDefinition& out) const override {
    if (hasDefinition) out = definition;
    return hasDefinition;
  }
  int SetParamNormalized(int paramID, float value) override {
    return SetParamsNormalized({{paramID, value}});
  }
  int SetParamsNormalized(const std::map<int, float>& map) override {
    ++writes;
    const int status = writeStatuses.empty() ? 0 : writeStatuses.front();
    if (!writeStatuses.empty()) writeStatuses.erase(writeStatuses.begin());
    // A failing write leaves its traces, as one that failed half-way would.
    for (const auto& [id, value] : map) values[static_cast<std::size_t>(id)] = value;
    return status;
  }
  int GetParamNormalized(int paramID, float& value) const override {
    const auto failing = readStatuses.find(paramID);
    if (failing != readStatuses.end() && failing->second != 4) return failing->second;
    if (paramID != unread) value = values[static_cast<std::size_t>(paramID)];
    return failing == readStatuses.end() ? 0 : failing->second;
  }
  bool ToPhysical(int paramID, float value, float& physical) const override {
    if (unconvertible == paramID) return false;
    physical = modelutils::ToPhysical(Param(paramID).minValue, Param(paramID).maxValue, value);
    return true;
  }
  bool ToNormalized(int paramID, float physical, float& value) const override {
    if (unconvertible == paramID) return false;
    value = modelutils::ToNormalized(Param(paramID).minValue, Param(paramID).maxValue, physical);
    return true;
  }
  std::string GetName() override { return definition.GetModelID(); }
  boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) override {
    return changed.connect(slot);
  }
  void SetActive(bool on) override { active = on; }
  bool IsActive() const override { return active; }
  std::string GetAdjustmentsMode() override { return "dialog"; }
  void SuspendSignaling() override {}
  void ResumeSignaling(bool) override {}

  SectionDefinition definition;
  std::vector<float> values;
  std::map<int, int> readStatuses;  // parameter id to the status of its read
  std::vector<int> writeStatuses;   // of the coming writes; 0 after the last
  int unconvertible = -1;
  int unread = -1;  // its read succeeds and gives no value
  bool hasDefinition = true;
  int writes = 0;
  bool active = false;
  ChangeSignal changed;

 private:
  const std::vector<ParamDefinition>& Params() const { return definition.GetParamDefinitions(); }
  const ParamDefinition& Param(int id) const { return Params()[static_cast<std::size_t>(id)]; }
};

}  // namespace orvel::test
