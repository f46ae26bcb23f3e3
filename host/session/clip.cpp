#include "host/session/clip.h"

namespace orvelhost {

template <typename T>
int Clip::Set(T& field, const T& value) {
  if (!(field == value)) {
    field = value;
    changed_();
  }
  return 0;
}

int Clip::GetClipType(orvel::ClipType& type) {
  type = type_;
  return 0;
}

int Clip::SetClipType(orvel::ClipType type) { return Set(type_, type); }

int Clip::GetAdjustmentsMode(std::string& modeID) {
  modeID = modeID_;
  return 0;
}

int Clip::SetAdjustmentsMode(const std::string& modeID) {
  const auto* modes = orvel::ModeDescriptorCache::Get();
  orvel::ClipType type = type_;
  if (modeID != modeID_ && modes != nullptr &&
      modes->GetClipTypeFromAdjustmentsMode(modeID, type)) {
    type_ = type;
  }
  return Set(modeID_, modeID);
}

int Clip::GetUserPresetGuid(orvel::Guid& guid) {
  guid = presetGuid_;
  return 0;
}

int Clip::SetUserPresetGuid(const orvel::Guid& guid) { return Set(presetGuid_, guid); }

boost::signals2::connection Clip::RegisterForModelChanges(const ChangeSignal::slot_type& slot) {
  return changed_.connect(slot);
}

void Clip::RequestMeasurement(bool withRemix) {
  wantsRemix_ = withRemix || wantsRemix_;
  const bool isKnown = measurement_ && (measurement_->isMapped || !withRemix);
  if (status_ == kAnalysis_Running || isKnown || !measurer_) {
    return;
  }
  status_ = kAnalysis_Running;
  measured_();
  const std::function<void()> measure = measurer_;  // it may replace itself
  measure();
}

void Clip::SetMeasurement(const std::optional<ClipMeasurement>& measurement) {
  if (measurement) {
    measurement_ = measurement;
  } else {
    wantsRemix_ = measurement_ && measurement_->isMapped;
  }
  status_ = measurement_ ? kAnalysis_Done : kAnalysis_None;
  measured_();
  if (measurement && wantsRemix_ && !measurement->isMapped) {
    RequestMeasurement(true);  // asked for while the rest was under way
  }
}

void Clip::ForgetMeasurement() {
  measurement_.reset();
  if (status_ == kAnalysis_Done) {
    status_ = kAnalysis_None;
  }
  measured_();
}

boost::signals2::connection Clip::RegisterForMeasurements(const ChangeSignal::slot_type& slot) {
  return measured_.connect(slot);
}

void Clip::AttachToModel(bool /*attached*/, orvel::OrvelModel* /*model*/) {}

}  // namespace orvelhost
