#include "orvel/models/value_summary.h"

#include <cmath>
#include <optional>

#include "orvel/models/section_multi_model.h"

namespace orvel::modelutils {
namespace {

class Summarizer {
 public:
  explicit Summarizer(int paramID) : paramID_(paramID) {}

  void Add(SectionModelInterface& model) {
    if (auto* multi = dynamic_cast<SectionMultiModel*>(&model)) {
      for (const auto& member : multi->GetModels()) Add(*member);
      return;
    }
    float value = 0.0f;
    const int status = model.GetParamNormalized(paramID_, value);
    if (status == kStatus_Success || status == kStatus_Tolerated) {
      AddValue(value);
    } else {
      lastFailure_ = status;
    }
  }

  int Get(ValueSummary& summary) const {
    if (!summary_) return lastFailure_;
    summary = *summary_;
    return kStatus_Success;
  }

 private:
  void AddValue(float value) {
    if (!summary_) {
      summary_ = ValueSummary{false, value, value, value};
      return;
    }
    if (value != summary_->first) summary_->mixed = true;  // also for a NaN
    summary_->least = std::fmin(summary_->least, value);
    summary_->greatest = std::fmax(summary_->greatest, value);
  }

  int paramID_;
  std::optional<ValueSummary> summary_;
  int lastFailure_ = kStatus_NoSuchModel;
};

}  // namespace

int GetValueSummary(const boost::intrusive_ptr<SectionModelInterface>& model, int paramID,
                    ValueSummary& summary) {
  Summarizer summarizer(paramID);
  if (model) summarizer.Add(*model);
  return summarizer.Get(summary);
}

}  // namespace orvel::modelutils
