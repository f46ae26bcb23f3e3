#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/clip.h"
#include "host/session/section_behaviour.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// One section of one clip. Its values live in the clip; each write brings the clip's effects in
/// line with all of them through the section's mappings and modifiers, and then sends one signal
/// for each parameter that changed, in ascending order of id.
///
/// An effect runs while both its section and its control are switched on. Parameters that are not
/// stored are read-backs: they follow the effect that they are mapped onto, or the section's
/// behaviour, and writing them changes nothing. A trigger discards what was measured on the clip,
/// has it measured anew where the section needs it, and reads as 0 again.
class ClipSectionModel : public orvel::SectionModelInterface {
 public:
  /// Statuses besides those of SectionModelStatus. With either of them nothing was changed.
  static constexpr int kStatus_UnknownParam = 1;
  static constexpr int kStatus_NotFinite = 2;

  ClipSectionModel(const std::string& mode,
                   const std::shared_ptr<const orvel::SectionDefinition>& definition,
                   const boost::intrusive_ptr<Clip>& clip);

  int GetNumParams() const override;
  orvel::ParamDefinition GetParamDefinition(int index) override;
  bool GetSectionDefinition(orvel::SectionDefinition& definition) const override;

  /// Has the clip measured if the section, as it is set, has to know more of it. Each write does
  /// so; call it for a model of a clip that holds values already.
  void RequestMeasurement();

  /// Values beyond 0..1 are limited to it.
  int SetParamNormalized(int paramID, float normalized) override;
  int SetParamsNormalized(const std::map<int, float>& values) override;
  int GetParamNormalized(int paramID, float& normalized) const override;

  /// Over the parameter's range, not limited; false for an unknown id.
  bool ToPhysical(int paramID, float normalized, float& physical) const override;
  bool ToNormalized(int paramID, float physical, float& normalized) const override;

  std::string GetName() override { return definition_->GetModelID(); }
  boost::signals2::connection RegisterForModelChanges(const ChangeSignal::slot_type& slot) override;
  void SetActive(bool active) override { active_ = active; }
  bool IsActive() const override { return active_; }
  std::string GetAdjustmentsMode() override { return mode_; }

  /// What is held back is sent once per parameter, with its value at that time, in ascending order.
  void SuspendSignaling() override { ++suspendCount_; }
  void ResumeSignaling(bool sendSignals) override;

 private:
  const orvel::ParamDefinition* Find(int paramID) const;
  void Follow();
  void ApplyToClip();
  void ApplyControl(const orvel::ControlDefinition& control);
  void ReadBack(const orvel::ControlDefinition& control);
  void SendHeldBack();

  std::string mode_;
  std::shared_ptr<const orvel::SectionDefinition> definition_;  // of all clips together
  boost::intrusive_ptr<Clip> clip_;
  std::vector<float>& values_;  // in clip_
  const SectionBehaviour* behaviour_;
  boost::signals2::scoped_connection measured_;
  bool active_ = false;
  unsigned suspendCount_ = 0;
  std::set<int> heldBack_;
  ChangeSignal changed_;
};

/// Makes the library's registry give section models for this host's clips, one for each clip.
void InstallSectionModels();

/// Takes that back.
void UninstallSectionModels();

}  // namespace orvelhost
