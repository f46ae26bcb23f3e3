#pragma once

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/parameter_modifier.h"

namespace orvel {

/// How one parameter of an audio effect follows a control: the control's normalized value, raised
/// to the power `curve`, is a place on the line through the keypoints, which stand at even
/// distances over 0..1. A modifier may bend the result. All arithmetic is in single precision.
///
/// In the sections of this library keypoints are places between 0 and 1 on the effect parameter's
/// own scale, which is the effect's affair: -100..50 dB for the gain of the hard limiter, for
/// example.
class ORVEL_EXPORT ParameterMapping {
 public:
  /// No keypoints yet; they are added one by one.
  ParameterMapping(unsigned paramIndex, float curve);

  /// A constant: every normalized value gives `value`.
  ParameterMapping(unsigned paramIndex, float value, float curve);

  /// A straight range from `start` to `end`.
  ParameterMapping(unsigned paramIndex, float start, float end, float curve);

  /// The line through these keypoints.
  ParameterMapping(unsigned paramIndex, const std::vector<float>& keypoints, float curve);

  /// The same.
  ParameterMapping(unsigned paramIndex, std::initializer_list<float> keypoints, float curve);

  /// Moving copies: what is left behind keeps the answers that its keypoints give.
  /// @{
  ParameterMapping(const ParameterMapping&) = default;
  ParameterMapping& operator=(const ParameterMapping&) = default;
  /// @}

  /// The range from element `paramIndex` of `starts` to the same element of `ends`; where a list is
  /// too short for it, its default stands in.
  static ParameterMapping FromSettings(unsigned paramIndex, const std::vector<float>& starts,
                                       const std::vector<float>& ends, float defaultStart,
                                       float defaultEnd, float curve);

  /// The effect's own index of the parameter that follows.
  unsigned GetParamIndex() const { return paramIndex_; }

  /// Whether it is this index.
  bool IsIndex(unsigned index) const { return paramIndex_ == index; }

  /// Adds a keypoint behind the last; all of them move to even distances.
  void AddKeypoint(float value);

  /// Removes the keypoints and nothing else.
  void Clear();

  /// The second argument of the modifier's functions; 1 until set.
  float GetModifierValue() const { return modifierValue_; }

  /// Whoever drives the mapping sets it to the normalized value of the model parameter that the
  /// modifier names, before each `FromNormalized`.
  void SetModifierValue(float value) { modifierValue_ = value; }

  /// The modifier; one that changes nothing until set.
  ParameterModifier GetModifier() const { return modifier_; }

  /// Replaces the modifier. The modifier value stays.
  void SetModifier(const ParameterModifier& modifier);

  /// Whether the modifier bends what comes out: both of its functions are there.
  bool HasModifierFunction() const { return modifier_.IsEnabled(); }

  /// The effect parameter's value at `normalized`, for any input: a value above 1 gives the last
  /// keypoint and one below 0 the first, except that from -1/(number of segments) downwards (after
  /// the curve) the last keypoint but one comes back. A NaN gives the first keypoint, but with a
  /// curve of 0, which makes 1 of every input, the last; a mapping without keypoints gives 0.
  ///
  /// The result is the same to the bit wherever it is computed: also where this is compiled into a
  /// program whose compiler may fuse a product and a sum. What a program gives up for itself with
  /// -ffast-math, or with clang's -ffp-contract=fast, is its own choice.
  float FromNormalized(float normalized) const {
    if (!isPlainRange_) return FromKeypoints(normalized);
    const float place = curve_ == 1.0f ? normalized : std::pow(normalized, curve_);
    const float aboveZero = place > 0.0f ? place : 0.0f;  // a NaN ends here
    return Between(start_, end_, aboveZero < 1.0f ? aboveZero : 1.0f);
  }

  /// The place at which the effect parameter has the value `physical`. `found`: there is one.
  /// `ambiguous`: there are others. `interpolated`: it lies between keypoints. 0 when none is
  /// found. With more than two keypoints every segment is measured from the first keypoint, not
  /// from its own start, so a value between keypoints comes back exactly only where there are two.
  float ToNormalized(float physical, bool& found, bool& ambiguous, bool& interpolated) const {
    if (isPlainRange_) {
      // Between the keypoints, and on neither of them, whichever of the two is the greater.
      const float fromStart = physical - start_;
      const float toEnd = end_ - physical;
      if (std::min(fromStart, toEnd) > kTolerance || std::max(fromStart, toEnd) < -kTolerance) {
        found = interpolated = true;
        ambiguous = false;
        const float place = fromStart / (end_ - start_);
        return isStraight_ ? place : std::pow(place, inverseCurve_);
      }
    }
    return FindKeypoints(physical, found, ambiguous, interpolated);
  }

  /// Index, keypoints, curve and modifier value; functions cannot be compared and take no part.
  friend ORVEL_EXPORT bool operator==(const ParameterMapping& left, const ParameterMapping& right);

 private:
  /// The distance at which a physical value still is a keypoint's own.
  static constexpr float kTolerance = 1e-7f;

  /// Rounds after the product and after the sum, as the library itself is compiled to do.
  static float Between(float start, float end, float fraction) {
#if defined(__clang__)
#pragma clang fp contract(off)
    return start + (end - start) * fraction;
#else
    return start + __builtin_assoc_barrier((end - start) * fraction);
#endif
  }

  float FromKeypoints(float normalized) const;
  float FindKeypoints(float physical, bool& found, bool& ambiguous, bool& interpolated) const;
  void UpdateRange();

  unsigned paramIndex_;
  std::vector<float> keypoints_;
  float curve_;
  float modifierValue_ = 1.0f;
  ParameterModifier modifier_;

  // Nearly every mapping is two keypoints without a modifier, and is asked for at every move
  // of a slider and every block of audio. These say so, and spare such a one the search, the calls
  // and the division; `UpdateRange` derives them from the fields above.
  bool isPlainRange_ = false;
  bool isStraight_ = true;  // on the way back, where a curve of 0 counts as none
  float start_ = 0.0f;
  float end_ = 0.0f;
  float inverseCurve_ = 1.0f;
};

}  // namespace orvel
