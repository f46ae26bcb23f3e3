#include "orvel/definitions/parameter_mapping.h"

#include <cmath>
#include <cstddef>

namespace orvel {
namespace {

constexpr float kToleranceAfterInvert = 5e-6f;  // the inverse costs precision
constexpr float kSameKeypoint = 1e-5f;

float Clamp01(float value) {
  const float aboveZero = value > 0.0f ? value : 0.0f;  // a NaN ends here
  return aboveZero < 1.0f ? aboveZero : 1.0f;
}

// The segment in which a value `scaled` by the number of segments falls. Conversion to an unsigned
// number takes all up to -1 for huge, hence for the last segment; it is spelled out, since the
// language leaves that conversion undefined.
std::size_t FindSegment(float scaled, std::size_t segments) {
  if (scaled <= -1.0f || scaled >= static_cast<float>(segments)) return segments - 1;
  return scaled > 0.0f ? static_cast<std::size_t>(scaled) : 0;
}

float Interpolate(const std::vector<float>& keypoints, float place) {
  const std::size_t segments = keypoints.size() - 1;
  // One segment needs no search, and no division: place - 0 / 1 is exact.
  std::size_t segment = 0;
  float fraction = place;
  if (segments > 1) {
    const auto count = static_cast<float>(segments);
    segment = FindSegment(count * place, segments);
    fraction = (place - static_cast<float>(segment) / count) * count;
  }
  const float start = keypoints[segment];
  return start + (keypoints[segment + 1] - start) * Clamp01(fraction);
}

struct Place {
  float normalized = 0.0f;
  bool found = false;
  bool ambiguous = false;
  bool interpolated = false;
};

bool IsNear(float left, float right, float tolerance) {
  return std::abs(left - right) <= tolerance;
}

Place FindKeypoint(const std::vector<float>& keypoints, float value, float tolerance) {
  for (std::size_t hit = 0; hit < keypoints.size(); ++hit) {
    if (!IsNear(value, keypoints[hit], tolerance)) continue;
    Place place{.normalized = static_cast<float>(hit) / static_cast<float>(keypoints.size() - 1),
                .found = true};
    for (std::size_t other = 0; other < keypoints.size() && !place.ambiguous; ++other) {
      place.ambiguous = other != hit && (IsNear(keypoints[other], keypoints[hit], kSameKeypoint) ||
                                         IsNear(value, keypoints[other], tolerance));
    }
    return place;
  }
  return {};
}

// Every segment is taken to start at the first keypoint, whichever its own start is: callers count
// on the places that this gives.
Place FindInSegments(const std::vector<float>& keypoints, float value) {
  const auto segments = static_cast<float>(keypoints.size() - 1);
  const float start = keypoints.front();
  Place place;
  for (std::size_t k = 0; k + 1 < keypoints.size(); ++k) {
    const float end = keypoints[k + 1];
    const bool contained = (start <= value && value <= end) || (start >= value && value >= end);
    if (!contained) continue;
    if (place.found) {
      place.ambiguous = true;
    } else {
      place.normalized =
          (value - start) / (end - start) / segments + static_cast<float>(k) / segments;
      place.found = place.interpolated = true;
    }
  }
  return place;
}

Place FindPlace(const std::vector<float>& keypoints, float value, float tolerance) {
  if (keypoints.empty()) return {};
  if (keypoints.size() == 1) {
    const bool hit = IsNear(value, keypoints.front(), tolerance);
    return {.found = hit, .ambiguous = hit};  // every place gives the one value
  }
  const Place exact = FindKeypoint(keypoints, value, tolerance);
  return exact.found ? exact : FindInSegments(keypoints, value);
}

float ElementOr(const std::vector<float>& list, std::size_t index, float fallback) {
  return index < list.size() ? list[index] : fallback;
}

}  // namespace

ParameterMapping::ParameterMapping(unsigned paramIndex, float curve)
    : paramIndex_(paramIndex), curve_(curve) {
  UpdateRange();
}

ParameterMapping::ParameterMapping(unsigned paramIndex, float value, float curve)
    : paramIndex_(paramIndex), keypoints_{value}, curve_(curve) {
  UpdateRange();
}

ParameterMapping::ParameterMapping(unsigned paramIndex, float start, float end, float curve)
    : paramIndex_(paramIndex), keypoints_{start, end}, curve_(curve) {
  UpdateRange();
}

ParameterMapping::ParameterMapping(unsigned paramIndex, const std::vector<float>& keypoints,
                                   float curve)
    : paramIndex_(paramIndex), keypoints_(keypoints), curve_(curve) {
  UpdateRange();
}

ParameterMapping::ParameterMapping(unsigned paramIndex, std::initializer_list<float> keypoints,
                                   float curve)
    : ParameterMapping(paramIndex, std::vector<float>(keypoints), curve) {}

ParameterMapping ParameterMapping::FromSettings(unsigned paramIndex,
                                                const std::vector<float>& starts,
                                                const std::vector<float>& ends, float defaultStart,
                                                float defaultEnd, float curve) {
  return {paramIndex, ElementOr(starts, paramIndex, defaultStart),
          ElementOr(ends, paramIndex, defaultEnd), curve};
}

void ParameterMapping::AddKeypoint(float value) {
  keypoints_.push_back(value);
  UpdateRange();
}

void ParameterMapping::Clear() {
  keypoints_.clear();
  UpdateRange();
}

void ParameterMapping::SetModifier(const ParameterModifier& modifier) {
  modifier_ = modifier;
  UpdateRange();
}

void ParameterMapping::UpdateRange() {
  // An end that is no number would pass for one above the start.
  isPlainRange_ = keypoints_.size() == 2 && !std::isnan(keypoints_[1]) && modifier_.IsEmpty();
  start_ = isPlainRange_ ? keypoints_[0] : 0.0f;
  end_ = isPlainRange_ ? keypoints_[1] : 0.0f;
  isStraight_ = curve_ == 0.0f || curve_ == 1.0f;
  inverseCurve_ = isStraight_ ? 1.0f : 1.0f / curve_;
}

float ParameterMapping::FromKeypoints(float normalized) const {
  const float place = curve_ == 1.0f ? normalized : std::pow(normalized, curve_);
  float value = 0.0f;
  if (keypoints_.size() > 1) {
    value = Interpolate(keypoints_, place);
  } else if (!keypoints_.empty()) {
    value = keypoints_.front();
  }
  return modifier_.Modify(value, modifierValue_);
}

float ParameterMapping::FindKeypoints(float physical, bool& found, bool& ambiguous,
                                      bool& interpolated) const {
  const bool inverts = modifier_.IsEnabled();
  const float value = inverts ? modifier_.Invert(physical, modifierValue_) : physical;
  const Place place = FindPlace(keypoints_, value, inverts ? kToleranceAfterInvert : kTolerance);
  found = place.found;
  ambiguous = place.ambiguous;
  interpolated = place.interpolated;
  return found && !isStraight_ ? std::pow(place.normalized, inverseCurve_) : place.normalized;
}

bool operator==(const ParameterMapping& left, const ParameterMapping& right) {
  return left.paramIndex_ == right.paramIndex_ && left.keypoints_ == right.keypoints_ &&
         left.curve_ == right.curve_ && left.modifierValue_ == right.modifierValue_;
}

}  // namespace orvel
