#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/models/section_model_interface.h"

namespace orvel::modelutils {

/// What a panel can show of one parameter of one or several clips. Values are normalized.
struct ValueSummary {
  bool mixed = false;     ///< the clips hold different values, were it by the last bit
  float least = 0.0f;     ///< of all that can be read
  float greatest = 0.0f;  ///< likewise
  float first = 0.0f;     ///< of the first model, which `GetParamNormalized` gives
};

/// Summarises a parameter over the model, or over the members of a `SectionMultiModel`. Members
/// that cannot be read are left out. Returns 0; with `summary` as it was, the status of the last
/// read when none could be read, and kStatus_NoSuchModel when there is nothing to read.
ORVEL_EXPORT int GetValueSummary(const boost::intrusive_ptr<SectionModelInterface>& model,
                                 int paramID, ValueSummary& summary);

}  // namespace orvel::modelutils
