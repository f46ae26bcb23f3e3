#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <boost/signals2/connection.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/models/section_model_interface.h"

namespace orvel {

/// The section models of several clips as one: a read gives the common value or tells that the
/// clips differ, a write goes to every clip, and the clips' signals become one. Definitions,
/// conversions and the name are those of the first model. Without models there are no parameters,
/// the name is "model_multi", conversions fail, reads leave their output alone and give 0.
///
/// "First" and "in order" mean the order of the models' addresses, not that of the clips.
///
/// A write, a switch, a suspension and a resume reach every model and every listener also when one
/// of them throws; the first exception goes on afterwards.
class ORVEL_EXPORT SectionMultiModel : public SectionModelInterface {
 public:
  /// In the order of their addresses.
  using Models = std::set<boost::intrusive_ptr<SectionModelInterface>>;

  /// Without models yet. `adjustmentsMode` is the mode of those that will be added.
  explicit SectionMultiModel(const std::string& adjustmentsMode);

  int GetNumParams() const override;
  ParamDefinition GetParamDefinition(int index) override;
  bool GetSectionDefinition(SectionDefinition& definition) const override;

  /// Write to every model and then send one signal for each parameter that changed, in ascending
  /// order of id; what a suspension held back until then goes along, also while it is in force.
  /// They return the last status that was not 0. Called by a listener of a write that is under way
  /// here, they change nothing and return kStatus_WriteUnderWay.
  int SetParamNormalized(int paramID, float normalized) override;
  int SetParamsNormalized(const std::map<int, float>& values) override;

  /// Gives the first model's value, with kStatus_ValuesDiffer when another one differs from it by a
  /// thousandth of the larger magnitude or more; else with the last status that was not 0.
  int GetParamNormalized(int paramID, float& normalized) const override;

  bool ToPhysical(int paramID, float normalized, float& physical) const override;
  bool ToNormalized(int paramID, float physical, float& normalized) const override;
  std::string GetName() override;
  boost::signals2::connection RegisterForModelChanges(const ChangeSignal::slot_type& slot) override;

  /// Tells every model.
  void SetActive(bool active) override;

  /// Whether one of the models is.
  bool IsActive() const override;

  std::string GetAdjustmentsMode() override { return adjustmentsMode_; }

  /// Silences every model until the outermost resume.
  void SuspendSignaling() override;

  /// Ends a suspension; does nothing without one. Signals are sent when any resume of the
  /// suspension asked for them, an inner one included, one for each parameter with its last value,
  /// in ascending order. A change of all parameters (-1) stands for the single ones before it.
  ///
  /// A suspension whose outermost resume comes while a write or a resume is under way here, from
  /// one of its listeners, ends without resuming the models: they stay silent.
  void ResumeSignaling(bool sendSignals) override;

  /// Takes a model in, also into a suspension in force. Null, a model that is in already and one
  /// of another section (another `GetName`) are passed over.
  virtual void AddModel(const boost::intrusive_ptr<SectionModelInterface>& model);

  /// Whether every model that can be read holds exactly the same value. A panel marks a control as
  /// mixed by this, also where `GetParamNormalized` still calls the values equal.
  virtual bool ModelsHaveIdenticalSetting(int paramID);

  /// The models taken in.
  virtual const Models& GetModels() { return models_; }

 protected:
  ~SectionMultiModel() override;

 private:
  template <typename Write>
  int WriteToModels(Write write);
  void OnSubModelChanged(int paramID, float value);
  void SendCachedModelSignals(FirstException& failure);
  SectionModelInterface* First() const;

  using Order = std::vector<SectionModelInterface*>;
  std::shared_ptr<const Order> InOrder() const;

  std::string adjustmentsMode_;
  Models models_;
  // The same side by side in memory, for walks over many; made when it is asked for. A walk holds
  // the one that it began with, whatever is added meanwhile.
  mutable std::shared_ptr<const Order> order_;
  std::map<std::int32_t, float> cachedSignals_;  // the last value of each
  boost::signals2::signal<void(int, float), CallEverySlot> modelChangedSignal_;
  std::vector<boost::signals2::scoped_connection> subModelConnections_;
  bool sending_ = false;  // models are being written or resumed
  std::uint32_t suspendCount_ = 0;
  bool allParamsChanged_ = false;   // -1 was held back
  bool resumeWithSignals_ = false;  // a resume of this suspension asked for signals
};

}  // namespace orvel
