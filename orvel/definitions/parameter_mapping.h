#pragma once

#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/parameter_modifier.h"

namespace orvel {

/// How one parameter of an audio effect follows a control: the control's normalized value, raised
/// to the power `curve`, is a place on the line through the keypoints, which stand at even
/// distances over 0..1. A modifier may bend the result. All arithmetic is in single precision.
class ORVEL_EXPORT ParameterMapping {
 public:
  /// No keypoints yet; they are added one by one.
  ParameterMapping(unsigned paramIndex, float curve);

  /// A constant: every normalized value gives `value`.
  ParameterMapping(unsigned paramIndex, float value, float curve);

  /// A straight range from `start` to `end`.
  ParameterMapping(unsigned paramIndex, float start, float end, float curve);

  ParameterMapping(unsigned paramIndex, const std::vector<float>& keypoints, float curve);

  /// The range from element `paramIndex` of `starts` to the same element of `ends`; where a list is
  /// too short for it, its default stands in.
  static ParameterMapping FromSettings(unsigned paramIndex, const std::vector<float>& starts,
                                       const std::vector<float>& ends, float defaultStart,
                                       float defaultEnd, float curve);

  /// The effect's own index of the parameter that follows.
  unsigned GetParamIndex() const { return paramIndex_; }
  bool IsIndex(unsigned index) const { return paramIndex_ == index; }

  void AddKeypoint(float value) { keypoints_.push_back(value); }

  /// Removes the keypoints and nothing else.
  void Clear() { keypoints_.clear(); }

  /// The second argument of the modifier's functions; 1 until set. Whoever drives the mapping sets
  /// it to the value of the parameter that the modifier names.
  float GetModifierValue() const { return modifierValue_; }
  void SetModifierValue(float value) { modifierValue_ = value; }

  ParameterModifier GetModifier() const { return modifier_; }
  void SetModifier(const ParameterModifier& modifier) { modifier_ = modifier; }
  bool HasModifierFunction() const { return modifier_.IsEnabled(); }

  /// The effect parameter's value at `normalized`, for any input: a value above 1 gives the last
  /// keypoint and one below 0 the first, except that from -1/(number of segments) downwards (after
  /// the curve) the last keypoint but one comes back. A NaN gives the first keypoint; a mapping
  /// without keypoints gives 0.
  float FromNormalized(float normalized) const;

  /// The place at which the effect parameter has the value `physical`. `found`: there is one.
  /// `ambiguous`: there are others. `interpolated`: it lies between keypoints. 0 when none is
  /// found. With more than two keypoints every segment is measured from the first keypoint, not
  /// from its own start, so a value between keypoints comes back exactly only where there are two.
  float ToNormalized(float physical, bool& found, bool& ambiguous, bool& interpolated) const;

  /// Index, keypoints, curve and modifier value; functions cannot be compared and take no part.
  friend ORVEL_EXPORT bool operator==(const ParameterMapping& left, const ParameterMapping& right);

 private:
  unsigned paramIndex_;
  std::vector<float> keypoints_;
  float curve_;
  float modifierValue_ = 1.0f;
  ParameterModifier modifier_;
};

}  // namespace orvel
