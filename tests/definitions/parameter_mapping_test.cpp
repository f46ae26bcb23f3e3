#include "orvel/definitions/parameter_mapping.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/definitions/normalized_value.h"

namespace orvel {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kMax = std::numeric_limits<float>::max();

struct Found {
  float normalized;
  bool found;
  bool ambiguous;
  bool interpolated;
  friend bool operator==(const Found&, const Found&) = default;
};

void PrintTo(const Found& place, std::ostream* stream) {
  *stream << place.normalized << " found " << place.found << " ambiguous " << place.ambiguous
          << " interpolated " << place.interpolated;
}

Found Find(const ParameterMapping& mapping, float physical) {
  Found result{-1.0f, true, true, true};
  result.normalized =
      mapping.ToNormalized(physical, result.found, result.ambiguous, result.interpolated);
  return result;
}

ParameterModifier HalveTowards(float target) {
  return {4, [target](float x, float a) { return target + (x - target) * a; },
          [target](float x, float a) { return target + (x - target) / a; }};
}

TEST(ParameterMapping, GivesTheValueAtAPlaceOnTheKeypoints) {
  const struct {
    std::vector<float> keypoints;
    float curve, normalized, physical;
  } cases[] = {
      {{2, 4}, 1, 0.5f, 3},
      {{2, 4}, 2, 0.5f, 2.5f},
      {{0, 10, 20}, 1, 0.75f, 15},
      {{5}, 1, 0.3f, 5},
      {{}, 1, 0.3f, 0},
      {{4, 2}, 1, 0.25f, 3.5f},
      {{0, 10, 20}, 1, 0.5f, 10},
      {{0, 10, 5}, 1, 0.75f, 7.5f},
      {{0, 10}, 0, 0.25f, 10},
      {{1, 2, 4, 8}, 1, 1, 8},
      {{1, 2, 4, 8}, 1, 0, 1},
  };
  for (const auto& [keypoints, curve, normalized, physical] : cases) {
    EXPECT_FLOAT_EQ(ParameterMapping(0, keypoints, curve).FromNormalized(normalized), physical);
  }
}

TEST(ParameterMapping, TakesEveryInputOutsideTheRange) {
  const ParameterMapping straight(0, {3, 5, 9}, 1.0f);
  for (const float above : {1.0f, 1.7f, 1e9f, kMax, kInfinity}) {
    EXPECT_EQ(straight.FromNormalized(above), 9.0f) << above;
  }
  for (const float below : {-0.0f, -0.1f, -0.499f, kNaN}) {
    EXPECT_EQ(straight.FromNormalized(below), 3.0f) << below;
  }
  // From minus one segment downwards it is the last keypoint but one.
  for (const float farBelow : {-0.5f, -1.0f, -1e9f, -kMax, -kInfinity}) {
    EXPECT_EQ(straight.FromNormalized(farBelow), 5.0f) << farBelow;
  }
  // A fractional power of a negative value is no number.
  EXPECT_EQ(ParameterMapping(0, {3, 5, 9}, 0.5f).FromNormalized(-4.0f), 3.0f);
  EXPECT_EQ(ParameterMapping(0, 3.0f, 5.0f, 1.0f).FromNormalized(-1.0f), 3.0f);
  EXPECT_EQ(ParameterMapping(0, {3, 5, 9}, 0.0f).FromNormalized(kNaN), 9.0f);  // NaN to the 0: 1
}

TEST(ParameterMapping, FindsThePlaceOfAValueWithItsFlags) {
  const struct {
    std::vector<float> keypoints;
    float curve, physical;
    Found expected;
  } cases[] = {
      // keypoints      curve  value     place                found  ambiguous interpolated
      {{2, 4}, 1, 3, {0.5f, true, false, true}},
      {{2, 4}, 2, 2.5f, {0.5f, true, false, true}},
      {{2, 4}, 0, 3, {0.5f, true, false, true}},
      {{2, 4}, 1, 2, {0, true, false, false}},
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
      {{0, 10}, 2, -1, {0, false, false, false}},
      {{0, 1}, 1, 5e-8f, {0, true, false, false}},
      {{0, 1}, 1, 9e-8f, {0, true, false, false}},
      {{0, 1}, 1, 1.2e-7f, {1.2e-7f, true, false, true}},
      {{0, 10}, -1, 12, {0, false, false, false}},
      {{0, 1}, 1, 2e-7f, {2e-7f, true, false, true}},
      {{0, 1}, 1, kNaN, {0, false, false, false}},
  };
  for (const auto& [keypoints, curve, physical, expected] : cases) {
    EXPECT_EQ(Find(ParameterMapping(0, keypoints, curve), physical), expected)
        << ::testing::PrintToString(keypoints) << " curve " << curve << " value " << physical;
  }
}

bool IsSame(float left, float right) {
  return left == right || (std::isnan(left) && std::isnan(right));
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
          EXPECT_TRUE(IsSame(inlined.FromNormalized(value), called.FromNormalized(value)));
          Found left = Find(inlined, value);
          Found right = Find(called, value);
          EXPECT_TRUE(IsSame(left.normalized, right.normalized));
          left.normalized = right.normalized = 0.0f;
          EXPECT_EQ(left, right);
        }
      }
    }
  }
}

TEST(ParameterMapping, WithTwoKeypointsComesBackToEveryPlace) {
  for (const float curve : {0.5f, 1.0f, 1.5f, 2.0f}) {
    for (const auto& [start, end] : {std::pair{-100.0f, 50.0f}, {1.0f, 0.2f}, {0.0f, 1.0f}}) {
      const ParameterMapping mapping(0, start, end, curve);
      for (float place = 0.0f; place <= 1.0f; place += 0.0625f) {
        const Found back = Find(mapping, mapping.FromNormalized(place));
        EXPECT_TRUE(back.found);
        EXPECT_NEAR(back.normalized, place, 2e-4f) << curve << ' ' << start << ' ' << end;
      }
    }
  }
}

TEST(ParameterMapping, AModifierBendsTheResultAndTheWayBack) {
  ParameterMapping mapping(0, 0.0f, 1.0f, 1.0f);
  mapping.SetModifier(HalveTowards(0.5f));
  EXPECT_TRUE(mapping.HasModifierFunction());
  EXPECT_EQ(mapping.FromNormalized(1.0f), 1.0f);  // the argument starts at 1
  mapping.SetModifierValue(0.5f);
  EXPECT_FLOAT_EQ(mapping.FromNormalized(1.0f), 0.75f);
  EXPECT_EQ(Find(mapping, 0.75f), (Found{1.0f, true, false, false}));
  // The inverse costs precision: a near miss of 4e-6 still is the keypoint.
  EXPECT_EQ(Find(mapping, 0.749998f), (Found{1.0f, true, false, false}));
  EXPECT_TRUE(Find(mapping, 0.74999f).interpolated);
  mapping.Clear();
  EXPECT_EQ(mapping.FromNormalized(0.3f), 0.25f);  // modify(0)
}

TEST(ParameterMapping, TheWayBackNeedsBothFunctionsAndTheWayThereOnlyOne) {
  ParameterMapping mapping(0, 0.0f, 1.0f, 1.0f);
  const auto twice = [](float x, float) { return 2.0f * x; };
  mapping.SetModifier(ParameterModifier(3, {}, twice));
  EXPECT_FALSE(mapping.HasModifierFunction());
  EXPECT_EQ(mapping.FromNormalized(0.25f), 0.25f);
  EXPECT_EQ(Find(mapping, 0.25f).normalized, 0.25f);
  mapping.SetModifier(ParameterModifier(3, twice, {}));
  EXPECT_EQ(mapping.FromNormalized(0.25f), 0.5f);
  EXPECT_EQ(Find(mapping, 0.25f).normalized, 0.25f);
  EXPECT_EQ(mapping.GetModifier().GetParamID(), 3);
  EXPECT_EQ(ParameterModifier().GetParamID(), -1);
  EXPECT_EQ(ParameterModifier().Modify(0.3f, 9.0f), 0.3f);
}

TEST(ParameterMapping, AChangedMappingAnswersAsTheNewOneAtOnce) {
  ParameterMapping mapping(0, 5.0f, 6.0f, 1.0f);
  mapping.Clear();
  EXPECT_EQ(mapping.FromNormalized(0.75f), 0.0f);
  for (const float keypoint : {0.0f, 10.0f, 40.0f}) mapping.AddKeypoint(keypoint);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 25.0f);
  EXPECT_EQ(Find(mapping, 40.0f), (Found{1.0f, true, false, false}));
  mapping.Clear();
  EXPECT_FALSE(Find(mapping, 5.0f).found);
  mapping.AddKeypoint(2.0f);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 2.0f);
  mapping.AddKeypoint(4.0f);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 3.5f);
  mapping.SetModifier(HalveTowards(0.0f));
  mapping.SetModifierValue(0.5f);
  EXPECT_EQ(mapping.FromNormalized(0.75f), 1.75f);
  EXPECT_EQ(Find(mapping, 1.75f), (Found{0.75f, true, false, true}));
  mapping.SetModifier(ParameterModifier());
  EXPECT_EQ(mapping.FromNormalized(0.75f), 3.5f);
  const ParameterMapping moved = std::move(mapping);
  EXPECT_EQ(mapping, moved);  // NOLINT(bugprone-use-after-move): left whole
}

TEST(ParameterMapping, EqualityLooksAtWhatCanBeCompared) {
  const ParameterMapping mapping(1, {1, 2}, 1.0f);
  ParameterMapping same(1, 1.0f);
  same.AddKeypoint(1);
  same.AddKeypoint(2);
  same.SetModifier(HalveTowards(0.5f));
  EXPECT_EQ(mapping, same);
  same.SetModifierValue(0.5f);
  EXPECT_NE(mapping, same);
  EXPECT_NE(mapping, ParameterMapping(2, {1, 2}, 1.0f));
  EXPECT_NE(mapping, ParameterMapping(1, {1, 2}, 2.0f));
  EXPECT_NE(mapping, ParameterMapping(1, {1}, 1.0f));
  EXPECT_EQ(ParameterMapping(1, {}, 1.0f), ParameterMapping(1, 1.0f));  // no constant of 0
  EXPECT_NE(ParameterMapping(1, kNaN, 1.0f), ParameterMapping(1, kNaN, 1.0f));
}

TEST(ParameterMapping, SettingsFallBackToDefaultsWhereTheyAreShort) {
  const std::vector<float> starts = {0.1f, 0.2f};
  const std::vector<float> ends = {0.8f};
  EXPECT_EQ(ParameterMapping::FromSettings(0, starts, ends, 5, 6, 1),
            ParameterMapping(0, 0.1f, 0.8f, 1));
  EXPECT_EQ(ParameterMapping::FromSettings(1, starts, ends, 5, 6, 1),
            ParameterMapping(1, 0.2f, 6.0f, 1));
  EXPECT_EQ(ParameterMapping::FromSettings(2, starts, ends, 5, 6, 1),
            ParameterMapping(2, 5.0f, 6.0f, 1));
}

TEST(NormalizedValue, IsNotClampedAndAnEmptyRangeGivesZero) {
  EXPECT_EQ(modelutils::ToNormalized(3, 3, 7), 0.0f);
  EXPECT_EQ(modelutils::ToNormalized(0, 10, 15), 1.5f);
  EXPECT_EQ(modelutils::ToPhysical(-100, 50, 2), 200.0f);
}

}  // namespace
}  // namespace orvel
