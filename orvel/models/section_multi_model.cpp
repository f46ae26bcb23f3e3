#include "orvel/models/section_multi_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvel/core/first_exception.h"
#include "orvel/core/flag_scope.h"

namespace orvel {
namespace {

constexpr int kAllParams = -1;
constexpr float kUnread = -1.0f;
constexpr float kTolerance = 0.001f;  // of the larger magnitude

bool AreClose(float left, float right) {
  if (left == right) return true;
  if (std::isnan(left) || std::isnan(right)) return false;
  float low = std::min(left, right);
  float high = std::max(left, right);
  if (high < 0.0f) {
    low = -std::exchange(high, -low);
  }
  return high - low < high * kTolerance;
}

}  // namespace

SectionMultiModel::SectionMultiModel(const std::string& adjustmentsMode)
    : adjustmentsMode_(adjustmentsMode) {}

SectionMultiModel::~SectionMultiModel() = default;

SectionModelInterface* SectionMultiModel::First() const {
  return models_.empty() ? nullptr : models_.begin()->get();
}

std::shared_ptr<const SectionMultiModel::Order> SectionMultiModel::InOrder() const {
  if (!order_ || order_->size() != models_.size()) {
    Order order;
    order.reserve(models_.size());
    for (const auto& model : models_) order.push_back(model.get());
    order_ = std::make_shared<const Order>(std::move(order));
  }
  return order_;
}

int SectionMultiModel::GetNumParams() const { return First() ? First()->GetNumParams() : 0; }

ParamDefinition SectionMultiModel::GetParamDefinition(int index) {
  static const ParamDefinition none;
  return First() ? First()->GetParamDefinition(index) : none;
}

bool SectionMultiModel::GetSectionDefinition(SectionDefinition& definition) const {
  return First() && First()->GetSectionDefinition(definition);
}

bool SectionMultiModel::ToPhysical(int paramID, float normalized, float& physical) const {
  return First() && First()->ToPhysical(paramID, normalized, physical);
}

bool SectionMultiModel::ToNormalized(int paramID, float physical, float& normalized) const {
  return First() && First()->ToNormalized(paramID, physical, normalized);
}

std::string SectionMultiModel::GetName() { return First() ? First()->GetName() : "model_multi"; }

boost::signals2::connection SectionMultiModel::RegisterForModelChanges(
    const ChangeSignal::slot_type& slot) {
  return modelChangedSignal_.connect(slot);
}

void SectionMultiModel::SetActive(bool active) {
  const boost::intrusive_ptr<SectionMultiModel> self(this);  // a member may let go of it
  const auto order = InOrder();
  FirstException failure;
  for (auto* model : *order) failure.Catch([=] { model->SetActive(active); });
  failure.Rethrow();
}

bool SectionMultiModel::IsActive() const {
  return std::any_of(models_.begin(), models_.end(), [](const auto& m) { return m->IsActive(); });
}

void SectionMultiModel::AddModel(const boost::intrusive_ptr<SectionModelInterface>& model) {
  if (!model || models_.contains(model)) return;
  if (First() && model->GetName() != GetName()) return;
  if (suspendCount_ > 0) model->SuspendSignaling();
  subModelConnections_.emplace_back(model->RegisterForModelChanges(
      [this](int paramID, float value) { OnSubModelChanged(paramID, value); }));
  models_.insert(models_.end(), model);
}

bool SectionMultiModel::ModelsHaveIdenticalSetting(int paramID) {
  const auto order = InOrder();
  bool isFirst = true;
  float reference = kUnread;
  for (auto* model : *order) {
    float value = kUnread;
    if (model->GetParamNormalized(paramID, value) != kStatus_Success) continue;
    if (std::exchange(isFirst, false)) {
      reference = value;
    } else if (value != reference) {  // also a NaN
      return false;
    }
  }
  return true;
}

int SectionMultiModel::GetParamNormalized(int paramID, float& normalized) const {
  const auto order = InOrder();
  int kept = kStatus_Success;
  bool isFirst = true;
  for (auto* model : *order) {
    float value = kUnread;
    const int status = model->GetParamNormalized(paramID, value);
    if (status != kStatus_Success) kept = status;
    if (std::exchange(isFirst, false)) {
      normalized = value;
    } else if (!AreClose(value, normalized)) {
      return kStatus_ValuesDiffer;
    }
  }
  return kept;
}

int SectionMultiModel::SetParamNormalized(int paramID, float normalized) {
  return WriteToModels([=](auto& model) { return model.SetParamNormalized(paramID, normalized); });
}

int SectionMultiModel::SetParamsNormalized(const std::map<int, float>& values) {
  return WriteToModels([&values](auto& model) { return model.SetParamsNormalized(values); });
}

template <typename Write>
int SectionMultiModel::WriteToModels(Write write) {
  if (sending_) return kStatus_WriteUnderWay;
  const boost::intrusive_ptr<SectionMultiModel> self(this);  // a listener may let go of it
  const teskcore::utility::FlagScope sending(sending_);
  const auto order = InOrder();
  FirstException failure;
  int kept = kStatus_Success;
  for (auto* model : *order) {
    failure.Catch([&] {
      const int status = write(*model);
      if (status != kStatus_Success) kept = status;
    });
  }
  SendCachedModelSignals(failure);
  failure.Rethrow();
  return kept;
}

void SectionMultiModel::OnSubModelChanged(int paramID, float value) {
  if (!sending_ && suspendCount_ == 0) {
    const boost::intrusive_ptr<SectionMultiModel> self(this);
    modelChangedSignal_(paramID, value);
    return;
  }
  if (paramID == kAllParams) {
    allParamsChanged_ = true;
    cachedSignals_.clear();
  }
  cachedSignals_[paramID] = value;
}

void SectionMultiModel::SuspendSignaling() {
  if (++suspendCount_ > 1) return;
  const boost::intrusive_ptr<SectionMultiModel> self(this);
  const auto order = InOrder();
  FirstException failure;
  for (auto* model : *order) failure.Catch([model] { model->SuspendSignaling(); });
  failure.Rethrow();
}

void SectionMultiModel::ResumeSignaling(bool sendSignals) {
  if (suspendCount_ == 0) return;
  if (sendSignals) resumeWithSignals_ = true;
  bool passedOn = resumeWithSignals_;
  if (--suspendCount_ > 0) return;
  if (sending_) {
    resumeWithSignals_ = false;
    return;
  }
  const boost::intrusive_ptr<SectionMultiModel> self(this);
  allParamsChanged_ = false;
  const teskcore::utility::FlagScope sending(sending_);
  const auto order = InOrder();
  FirstException failure;
  for (auto* model : *order) {
    failure.Catch([&] { model->ResumeSignaling(passedOn); });
    // One signal for all parameters covers what the remaining models would tell.
    if (std::exchange(allParamsChanged_, false)) passedOn = false;
  }
  if (resumeWithSignals_) {
    SendCachedModelSignals(failure);
  } else {
    cachedSignals_.clear();
  }
  resumeWithSignals_ = false;
  failure.Rethrow();
}

void SectionMultiModel::SendCachedModelSignals(FirstException& failure) {
  // What arrives meanwhile is sent in a round of its own.
  while (!cachedSignals_.empty()) {
    for (const auto& [paramID, value] : std::exchange(cachedSignals_, {})) {
      failure.Catch([&, id = paramID, changed = value] { modelChangedSignal_(id, changed); });
    }
  }
}

}  // namespace orvel
