#include "orvel/definitions/parameter_mapping.h"

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/definitions/normalized_value.h"

namespace orvel {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kMax = std::numeric_limits<float>::max();

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
      {{0, 10, 20}, 1, 0.75f, 15},
      {{5}, 1, 0.3f, 5},
      {{}, 1, 0.3f, 0},
      {{4, 2}, 1, 0.25f, 3.5f},
      {{0, 10, 5}, 1, 0.75f, 7.5f},
      {{0, 10}, 0, 0.25f, 10},
      {{3, 5, 9}, 1, 1, 9},
      {{3, 5, 9}, 1, kInfinity, 9},
      {{3, 5, 9}, 1, -0.499f, 3},
      {{3, 5, 9}, 1, kNaN, 3},
      {{3, 5, 9}, 1, -0.5f, 5},  // minus one segment: the last keypoint but one
      {{3, 5, 9}, 1, -kInfinity, 5},
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
      {{5}, 1, 6, {0, false, false, false}},
      {{}, 1, 0, {0, false, false, false}},
      {{0, 10, 20}, 1, 10, {0.5f, true, false, false}},
      {{0, 10, 20}, 2, 10, {std::sqrt(0.5f), true, false, false}},
      {{0, 10, 20}, 1, 15, {0.875f, true, false, true}},
      {{0, 10, 20}, 1, 5, {0.25f, true, true, true}},
      {{20, 10, 0}, 1, 15, {0.25f, true, true, true}},
      {{3, 3}, 1, 3, {0, true, true, false}},
      {{0, 1, 1.000008f}, 1, 1, {0.5f, true, true, false}},
      {{0, 1, 1.00002f}, 1, 1, {0.5f, true, false, false}},
      {{0, 10}, 1, 12, {0, false, false, false}},
      {{0, 1}, 1, 9e-8f, {0, true, false, false}},
      {{0, 1}, 1, 1.2e-7f, {1.2e-7f, true, false, true}},
      {{0, 1}, 1, kNaN, {0, false, false, false}},
  };
  for (const auto& [keypoints, curve, physical, expected] : cases) {
    EXPECT_EQ(Find(ParameterMapping(0, keypoints, curve), physical), expected)
        << ::testing::PrintToString(keypoints) << " curve " << curve << " value " << physical;
  }
}

TEST(ParameterMapping, OfTwoKeypointsAnswersInlineAsInTheLibrary) {
  const float values[] = {0,    1,     -1,        5,          1e-8f, 0.99999994f,
                          kMax, -kMax, kInfinity, -kInfinity, kNaN};
  const ParameterModifier same(1, [](float x, float) { return x; }, {});
  for (const float start : values) {
    for (const float end : values) {
      for (const float curve : {0.0f, 1.0f, 2.0f, -1.0f}) {
        const ParameterMapping inlined(0, start, end, curve);
        ParameterMapping called = inlined;
        called.SetModifier(same);
        for (const float value : values) {
          SCOPED_TRACE(::testing::PrintToString(std::vector{start, end, curve, value}));
          EXPECT_EQ(Comparable(inlined.FromNormalized(value)),
                    Comparable(called.FromNormalized(value)));
          EXPECT_EQ(Find(inlined, value), Find(called, value));
        }
      }
    }
  }
}

TEST(ParameterMapping, TheWayBackNeedsBothFunctionsAndTheWayThereOnlyOne) {
  ParameterMapping mapping(0, 0.0f, 1.0f, 1.0f);
  const auto twice = [](float x, float) { return 2.0f * x; };
  mapping.SetModifier(ParameterModifier(3, {}, twice));
  EXPECT_EQ(mapping.FromNormalized(0.25f), 0.25f);
  EXPECT_EQ(Find(mapping, 0.25f), (Found{0.25f, true, false, true}));
  mapping.SetModifier(ParameterModifier(3, twice, {}));
  EXPECT_EQ(mapping.FromNormalized(0.25f), 0.5f);
  EXPECT_EQ(Find(mapping, 0.25f), (Found{0.25f, true, false, true}));
}

TEST(ParameterMapping, AChangedMappingAnswersAsTheNewOneAtOnce) {
  ParameterMapping mapping(0, 5.0f, 6.0f, 1.0f);
  mapping.Clear();
  EXPECT_EQ(mapping.FromNormalized(0.75f), 0.0f);
  for (const float keypoint : {0.0f, 10.0f, 40.0f}) mapping.AddKeypoint(keypoint);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 25.0f);
  EXPECT_EQ(Find(mapping, 40.0f), (Found{1.0f, true, false, false}));
  mapping.Clear();
  EXPECT_EQ(Find(mapping, 5.0f), (Found{0, false, false, false}));
  mapping.AddKeypoint(2.0f);
  mapping.AddKeypoint(4.0f);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 3.5f);
  mapping.SetModifier(kHalve);
  mapping.SetModifierValue(0.5f);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 1.75f);
  EXPECT_EQ(Find(mapping, 1.75f), (Found{0.75f, true, false, true}));
  // The inverse costs precision: a near miss of 4e-6 still is the keypoint.
  EXPECT_EQ(Find(mapping, 1.999998f), (Found{1, true, false, false}));
  mapping.SetModifier(ParameterModifier());
  EXPECT_EQ(mapping.FromNormalized(0.75f), 3.5f);
  const ParameterMapping moved = std::move(mapping);
  EXPECT_EQ(mapping, moved);  // NOLINT(bugprone-use-after-move): left whole
}

TEST(ParameterMapping, EqualityLooksAtWhatCanBeCompared) {
  const ParameterMapping mapping(1, {1, 2}, 1.0f);
  ParameterMapping same(1, {1, 2}, 1.0f);
  same.SetModifier(kHalve);
  EXPECT_EQ(mapping, same);
  same.SetModifierValue(0.5f);
  for (const auto& other : {same, ParameterMapping(2, {1, 2}, 1.0f),
                            ParameterMapping(1, {1, 2}, 2.0f), ParameterMapping(1, {1}, 1.0f)}) {
    EXPECT_NE(mapping, other);
  }
  EXPECT_EQ(ParameterMapping(1, {}, 1.0f), ParameterMapping(1, 1.0f));  // no constant of 0
}

TEST(NormalizedValue, IsNotClampedAndAnEmptyRangeGivesZero) {
  EXPECT_EQ(modelutils::ToNormalized(3, 3, 7), 0.0f);
  EXPECT_EQ(modelutils::ToNormalized(0, 10, 15), 1.5f);
}

}  // namespace
}  // namespace orvel
