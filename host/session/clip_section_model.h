#pragma once

#include <map>
#include <set>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/clip.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// One section of one clip. Its values live in the clip; each write brings the clip's effects in
/// line with all of them through the section's mappings and modifiers, and then sends one signal
/// for each parameter that changed, in ascending order of id.
///
/// An effect runs while both its section and its control are switched on. Pan acts on the clip
/// itself. `PanNotSupported` is 1 for a clip of more than two channels; the clip decides it, so
/// writing it changes nothing.
class ClipSectionModel : public orvel::SectionModelInterface {
 public:
  /// Statuses besides those of SectionModelStatus. With either of them nothing was changed.
  static constexpr int kStatus_UnknownParam = 1;
  static constexpr int kStatus_NotFinite = 2;

  ClipSectionModel(const std::string& mode, const orvel::SectionDefinition& definition,
                   const boost::intrusive_ptr<Clip>& clip);

  int GetNumParams() const override;
  orvel::ParamDefinition GetParamDefinition(int index) override;
  bool GetSectionDefinition(orvel::SectionDefinition& definition) const override;

  /// Values beyond 0..1 are limited to it.
  int SetParamNormalized(int paramID, float normalized) override;
  int SetParamsNormalized(const std::map<int, float>& values) override;
  int GetParamNormalized(int paramID, float& normalized) const override;

  /// Over the parameter's range, not limited; false for an unknown id.
  bool ToPhysical(int paramID, float normalized, float& physical) const override;
  bool ToNormalized(int paramID, float physical, float& normalized) const override;

  std::string GetName() override { return definition_.GetModelID(); }
  boost::signals2::connection RegisterForModelChanges(const ChangeSignal::slot_type& slot) override;
  void SetActive(bool active) override { active_ = active; }
  bool IsActive() const override { return active_; }
  std::string GetAdjustmentsMode() override { return mode_; }

  /// What is held back is sent once per parameter, with its value at that time, in ascending order.
  void SuspendSignaling() override { ++suspendCount_; }
  void ResumeSignaling(bool sendSignals) override;

 private:
  const orvel::ParamDefinition* Find(int paramID) const;
  bool IsDecidedByClip(int paramID) const;
  bool IsOn(int paramID) const;
  void ApplyToClip();
  void ApplyControl(const orvel::ControlDefinition& control);
  void SendHeldBack();

  std::string mode_;
  orvel::SectionDefinition definition_;
  boost::intrusive_ptr<Clip> clip_;
  std::vector<float>& values_;  // in clip_
  bool active_ = false;
  unsigned suspendCount_ = 0;
  std::set<int> heldBack_;
  ChangeSignal changed_;
};

/// Makes the library's registry give a ClipSectionModel for a single clip of this host.
void InstallSectionModels();

/// Takes that back.
void UninstallSectionModels();

}  // namespace orvelhost
