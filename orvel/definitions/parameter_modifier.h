#pragma once

#include <boost/function.hpp>

#include "orvel/core/export.h"

namespace orvel {

/// Lets the value of one more model parameter, the argument, bend what a mapping gives: a function
/// and its inverse, both of (value, argument). Either may be empty.
class ORVEL_EXPORT ParameterModifier {
 public:
  /// Of the mapped value and the normalized value of the parameter that is the argument.
  using Function = boost::function<float(float value, float argument)>;

  /// Depends on no parameter and changes nothing.
  ParameterModifier() = default;

  /// `paramID` is the id of the model parameter that gives the argument.
  ParameterModifier(int paramID, const Function& modify, const Function& invert);

  /// `value` bent; unchanged when there is no function for it.
  float Modify(float value, float argument) const {
    return modify_ ? modify_(value, argument) : value;
  }

  /// The way back; unchanged when there is no function for it.
  float Invert(float value, float argument) const {
    return invert_ ? invert_(value, argument) : value;
  }

  /// Whether neither function is there.
  bool IsEmpty() const { return !modify_ && !invert_; }

  /// Whether both functions are there.
  bool IsEnabled() const { return modify_ && invert_; }

  /// -1 when it depends on no parameter.
  int GetParamID() const { return paramID_; }

 private:
  Function modify_;
  Function invert_;
  int paramID_ = -1;
};

}  // namespace orvel
