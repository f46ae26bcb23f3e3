#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "orvel/definitions/normalized_value.h"
#include "orvel/models/section_model_interface.h"

namespace orvel::test {

/// A section model over a list of values, which may be a clip's. It can be told to fail.
class FakeSectionModel : public SectionModelInterface {
 public:
  explicit FakeSectionModel(const std::vector<ParamDefinition>& params)
      : FakeSectionModel(
            SectionDefinition("model_fake", u"Fake", PropList(), params, {}, "FakeSection"),
            "dialog", std::make_shared<std::vector<float>>()) {}

  FakeSectionModel(const SectionDefinition& of, const std::string& ofMode,
                   const std::shared_ptr<std::vector<float>>& storage)
      : definition(of), mode(ofMode), values(*storage), storage_(storage) {
    for (std::size_t i = values.size(); i < Params().size(); ++i) {
      const ParamDefinition& param = Params()[i];
      values.push_back(
          modelutils::ToNormalized(param.minValue, param.maxValue, param.defaultValue));
    }
  }

  int GetNumParams() const override { return static_cast<int>(Params().size()); }
  ParamDefinition GetParamDefinition(int index) override { return Param(index); }
  bool GetSectionDefinition(SectionDefinition& out) const override {
    out = definition;
    return true;
  }
  int SetParamNormalized(int paramID, float value) override {
    return SetParamsNormalized({{paramID, value}});
  }
  int SetParamsNormalized(const std::map<int, float>& map) override {
    ++writes;
    const int status = writeStatuses.empty() ? 0 : writeStatuses.front();
    if (!writeStatuses.empty()) writeStatuses.erase(writeStatuses.begin());
    // A failing write leaves its traces, as one that failed half-way would.
    for (const auto& [id, value] : map) {
      float& stored = values[static_cast<std::size_t>(id)];
      if (std::exchange(stored, value) != value) Announce(id);
    }
    return status;
  }
  int GetParamNormalized(int paramID, float& value) const override {
    const auto failing = readStatuses.find(paramID);
    if (failing != readStatuses.end() && failing->second != 4) return failing->second;
    value = values[static_cast<std::size_t>(paramID)];
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
  void SetActive(bool on) override {
    active = on;
    if (onSetActive) onSetActive(on);
  }
  bool IsActive() const override { return active; }
  std::string GetAdjustmentsMode() override { return mode; }
  void SuspendSignaling() override {
    ++suspendCount;
    if (onSuspend) onSuspend();
  }
  void ResumeSignaling(bool sendSignals) override {
    resumes.push_back(sendSignals);
    if (--suspendCount > 0) return;
    const std::set<int> ids = std::exchange(heldBack_, {});
    for (const int id : ids) {
      if (sendSignals) Announce(id);
    }
  }

  /// Tells listeners of a parameter (-1: all), now or at the end of the suspension.
  void Announce(int id) {
    const boost::intrusive_ptr<FakeSectionModel> self(this);
    if (suspendCount > 0) {
      heldBack_.insert(id);
    } else {
      changed(id, id < 0 ? 0.0f : values[static_cast<std::size_t>(id)]);
    }
  }

  SectionDefinition definition;
  std::string mode;
  std::vector<float>& values;
  std::map<int, int> readStatuses;  // parameter id to the status of its read
  std::vector<int> writeStatuses;   // of the coming writes; 0 after the last
  int unconvertible = -1;
  int writes = 0;
  bool active = false;
  int suspendCount = 0;
  std::vector<bool> resumes;  // with what each was asked
  ChangeSignal changed;
  std::function<void(bool on)> onSetActive;
  std::function<void()> onSuspend;

 private:
  const std::vector<ParamDefinition>& Params() const { return definition.GetParamDefinitions(); }
  const ParamDefinition& Param(int id) const { return Params()[static_cast<std::size_t>(id)]; }

  std::shared_ptr<std::vector<float>> storage_;
  std::set<int> heldBack_;
};

}  // namespace orvel::test
