#include "orvel/definitions/parameter_mapping.h"

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace orvel {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// Equal to itself, which a NaN is not.
float Comparable(float value) { return std::isnan(value) ? 777.0f : value; }

// The place, and whether it is found, ambiguous, interpolated.
using Found = std::tuple<float, bool, bool, bool>;

Found Find(const ParameterMapping& mapping, float physical) {
  bool found = true;
  bool ambiguous = true;
  bool interpolated = true;
  const float place = mapping.ToNormalized(physical, found, ambiguous, interpolated);
  return {Comparable(place), found, ambiguous, interpolated};
}

const ParameterModifier kHalve(
    4, [](float x, float a) { return x * a; }, [](float x, float a) { return x / a; });

TEST(ParameterMapping, GivesTheValueAtAPlaceOnTheKeypointsAndBeyondThem) {
  const struct {
    std::vector<float> keypoints;
    float curve, normalized, physical;
  } cases[] = {
      {{2, 4}, 2, 0.5f, 2.5f},
      {{5}, 1, 0.3f, 5},
      {{}, 1, 0.3f, 0},
      {{0, 10, 5}, 1, 0.75f, 7.5f},
      {{0, 10}, 0, 0.25f, 10},
      {{3, 5, 9}, 1, -0.499f, 3},
      {{3, 5, 9}, 1, kNaN, 3},
      {{3, 5, 9}, 1, -0.5f, 5},  // minus one segment: the last
                                 // keypoint but one
      {{3, 5, 9}, 0.5f, -4, 3},  // a fractional power of a negative value is no number
      {{3, 5, 9}, 0, kNaN, 9},   // NaN to the 0: 1
  };
  for (const auto& [keypoints, curve, normalized, physical] : cases) {
    EXPECT_FLOAT_EQ(ParameterMapping(0, keypoints, curve).FromNormalized(normalized), physical);
  }
}

TEST(ParameterMapping, FindsThePlaceOfAValueWithItsFlags) {
  const struct {
    std::vector<float> keypoints;
    float curve, physical;
    Found expected;
  } cases[] = {
      // keypoints      curve  value     place                found  ambiguous interpolated
      {{2, 4}, 2, 2.5f, {0.5f, true, false, true}},
      {{2, 4}, 0, 3, {0.5f, true, false, true}},
      {{5}, 1, 5, {0, true, true, false}},
      {{}, 1, 0, {0, false, false, false}},
      {{0, 10, 20}, 1, 15, {0.875f, true, false, true}},
      {{0, 10, 20}, 1, 5, {0.25f, true, true, true}},
      {{20, 10, 0}, 1, 15, {0.25f, true, true, true}},
      {{3, 3}, 1, 3, {0, true, true, false}},
      {{0, 1, 1.000008f}, 1, 1, {0.5f, true, true, false}},
      {{0, 1, 1.00002f}, 1, 1, {0.5f, true, false, false}},
      {{0, 1}, 1, 9e-8f, {0, true, false, false}},
      {{0, 1}, 1, 1.2e-7f, {1.2e-7f, true, false, true}},
      {{0, 1}, 1, kNaN, {0, false, false, false}},
  };
  for (const auto& [keypoints, curve, physical, expected] : cases) {
    EXPECT_EQ(Find(ParameterMapping(0, keypoints, curve), physical), expected)
        << ::testing::PrintToString(keypoints) << " curve " << curve << " value " << physical;
  }
}

TEST(ParameterMapping, AChangedMappingAnswersAsTheNewOneAtOnce) {
  ParameterMapping mapping(0, 5.0f, 6.0f, 1.0f);
  mapping.Clear();
  EXPECT_EQ(mapping.FromNormalized(0.75f), 0.0f);
  for (const float keypoint : {0.0f, 10.0f, 40.0f}) mapping.AddKeypoint(keypoint);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 25.0f);
  EXPECT_EQ(Find(mapping, 40.0f), (Found{1.0f, true, false, false}));
  mapping.Clear();
  mapping.AddKeypoint(2.0f);
  mapping.AddKeypoint(4.0f);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 3.5f);
  mapping.SetModifier(kHalve);
  const ParameterMapping same = mapping;
  mapping.SetModifierValue(0.5f);
  EXPECT_NE(mapping, same);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 1.75f);
  EXPECT_EQ(Find(mapping, 1.75f), (Found{0.75f, true, false, true}));
  // The inverse costs precision: a near miss of 4e-6 still is the keypoint.
  EXPECT_EQ(Find(mapping, 1.999998f), (Found{1, true, false, false}));
  mapping.SetModifier(ParameterModifier());
  EXPECT_EQ(mapping.FromNormalized(0.75f), 3.5f);
  const ParameterMapping moved = std::move(mapping);
  EXPECT_EQ(mapping, moved);  // NOLINT(bugprone-use-after-move): left whole
}

}  // namespace
}  // namespace orvel
