#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/analysis/loudness_match.h"
#include "host/session/clip_measurement.h"
#include "host/session/effect_chain.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// A clip of the session: its mix type, the values of its sections, what these do to its audio, and
/// what was measured on it.
class Clip : public orvel::MixTypeClipModelInterface {
 public:
  Clip(const std::string& name, const AudioFormat& format) : name_(name), format_(format) {}

  // Each returns 0. A setter announces a change, and nothing when the value stays the same.
  int GetClipType(orvel::ClipType& type) override;
  int SetClipType(orvel::ClipType type) override;
  int GetAdjustmentsMode(std::string& modeID) override;
  /// The clip also gets the clip type that goes with the mode, if one does.
  int SetAdjustmentsMode(const std::string& modeID) override;
  int GetUserPresetGuid(orvel::Guid& guid) override;
  int SetUserPresetGuid(const orvel::Guid& guid) override;

  bool IsReady() override { return true; }
  std::string GetName() override { return name_; }
  boost::signals2::connection RegisterForModelChanges(const ChangeSignal::slot_type& slot) override;

  /// Does nothing: no path of this host leads from a clip to its model.
  void AttachToModel(bool attached, orvel::OrvelModel* model) override;

  const AudioFormat& Format() const { return format_; }

  /// Who measures the clip when one of its sections asks for it; called at most once until the
  /// measurement is set or discarded. It may set the measurement at once or later.
  void SetMeasurer(const std::function<void()>& measurer) { measurer_ = measurer; }

  /// Has the clip measured, and `withRemix` mapped for a remix, unless it is, or that is under way,
  /// or there is nobody to do it.
  void RequestMeasurement(bool withRemix);
  /// For the measurer: whether it has to be mapped for a remix, too.
  bool WantsRemix() const { return wantsRemix_; }

  /// Stores what was measured; none, when that failed or was cancelled, keeps what was known before
  /// and lets the rest be asked for anew.
  void SetMeasurement(const std::optional<ClipMeasurement>& measurement);

  /// Discards what was measured. What is under way goes on.
  void ForgetMeasurement();

  const std::optional<ClipMeasurement>& Measurement() const { return measurement_; }
  /// kAnalysis_None, kAnalysis_Running or kAnalysis_Done.
  AnalysisStatus MeasurementStatus() const { return status_; }

  /// The slot is called after each change of the measurement or its status.
  boost::signals2::connection RegisterForMeasurements(const ChangeSignal::slot_type& slot);

  EffectChain& Chain() { return chain_; }
  const EffectChain& Chain() const { return chain_; }

  /// The normalized values of a section by parameter id, empty until its first model fills them.
  /// They stay with the clip, while section models come and go with the selection.
  std::vector<float>& SectionValues(const std::string& modelID) { return sectionValues_[modelID]; }
  const std::map<std::string, std::vector<float>>& AllSectionValues() const {
    return sectionValues_;
  }

 private:
  template <typename T>
  int Set(T& field, const T& value);

  std::string name_;
  AudioFormat format_;
  orvel::ClipType type_ = orvel::type_not_set;
  std::string modeID_ = orvel::kAdjustmentsModeUnknown;
  orvel::Guid presetGuid_;
  EffectChain chain_;
  std::map<std::string, std::vector<float>> sectionValues_;
  ChangeSignal changed_;
  std::function<void()> measurer_;
  bool wantsRemix_ = false;
  AnalysisStatus status_ = kAnalysis_None;
  std::optional<ClipMeasurement> measurement_;
  ChangeSignal measured_;
};

}  // namespace orvelhost
