#include "host/timing/remix.h"

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

constexpr double kBar = 2.0;
constexpr double kDuration = 4 * kChordLoop;

class RemixTest : public ::testing::Test {
 protected:
  static const AudioBlock& Loop() {
    static const AudioBlock loop = Make(kRate, 1, kDuration, ChordLoop());
    return loop;
  }
  static const RemixMap& Map() {
    static const RemixMap map = MapForRemix(*OpenerOf(Loop())()).value();
    return map;
  }

  static RemixPlan Plan(double duration, bool favorShortSegments = false) {
    return PlanRemix(OpenerOf(Loop()), Map(), duration, favorShortSegments);
  }
  static AudioBlock Render(const RemixPlan& plan) {
    return ReadAll(*Remix(OpenerOf(Loop()), plan));
  }

  static constexpr int kRate = 22050;
};

TEST_F(RemixTest, FindsTheBars) {
  EXPECT_EQ(Map().beatsPerBar, 4);
  for (const std::int64_t line : Map().barLines) {
    EXPECT_NEAR(std::remainder(static_cast<double>(line) / kRate, kBar), 0.0, 0.04);
  }
  const DurationRange range = RemixRange(Map());
  EXPECT_LT(range.least, kDuration / 1.8);
  EXPECT_NEAR(range.greatest, 4 * kDuration, 0.01);
}

TEST_F(RemixTest, ReachesEveryDurationWithJoinsOnTheBar) {
  const DurationRange range = RemixRange(Map());
  for (const double wanted : {range.least, 19.7, 24.0, 31.0, 37.3, 55.5, 90.0}) {
    for (const bool favorShortSegments : {false, true}) {
      SCOPED_TRACE(wanted);
      const RemixPlan plan = Plan(wanted, favorShortSegments);
      EXPECT_NEAR(static_cast<double>(plan.frameCount) / kRate, wanted, 0.02);
      double length = 0.0;
      for (std::size_t index = 0; index < plan.segments.size(); ++index) {
        const RemixSegment& segment = plan.segments[index];
        const double begin = static_cast<double>(segment.begin) / kRate;
        const double end = static_cast<double>(segment.end) / kRate;
        length += end - begin;
        // Ahead of the bar by no more than the drum's attack needs.
        EXPECT_NEAR(std::remainder(begin + 0.025, kBar), 0.0, index == 0 ? 0.03 : 0.05);
        if (index + 1 < plan.segments.size()) {
          EXPECT_NEAR(std::remainder(end + 0.025, kBar), 0.0, 0.05);
        }
      }
      EXPECT_NEAR(length / wanted, 1.0, 0.07) << "the rest is stretched";
    }
  }
  EXPECT_EQ(Plan(0.5).frameCount, Plan(range.least).frameCount);
}

TEST_F(RemixTest, AJoinInMusicThatRepeatsItselfCannotBeHeard) {
  for (const double wanted : {kDuration - kChordLoop, kDuration + kChordLoop}) {
    const RemixPlan plan = Plan(wanted);
    ASSERT_GE(plan.segments.size(), 2u);
    const AudioBlock remixed = Render(plan);
    EXPECT_EQ(remixed.FrameCount(), static_cast<std::size_t>(plan.frameCount));
    const AudioBlock endless = Make(kRate, 1, wanted, ChordLoop());
    ASSERT_EQ(remixed.FrameCount(), endless.FrameCount());
    EXPECT_LT(DifferenceInDb(remixed, endless), -60.0);
  }
}

TEST_F(RemixTest, TheLengthOfItsOwnLeavesTheClipAsItIs) {
  EXPECT_TRUE(HaveSameSamples(Render(Plan(kDuration)), Loop()));
}

TEST_F(RemixTest, ShortSegmentsMakeJoinsMoreFrequent) {
  EXPECT_EQ(LeastBarsBetweenJoins(Map(), true), 1);
  EXPECT_GT(LeastBarsBetweenJoins(Map(), false), 1);
}

TEST(MapForRemix, RefusesWhatHasNoBars) {
  EXPECT_FALSE(MapForRemix(*OpenerOf(Make(22050, 1, 2.0, ChordLoop()))()).has_value());
  const AudioBlock noise = Make(22050, 1, 12.0, Noise(0.1));
  EXPECT_FALSE(MapForRemix(*OpenerOf(noise)()).has_value());
  EXPECT_THROW(MapForRemix(*OpenerOf(noise)(), [](double) { return false; }), Cancelled);
}

}  // namespace
}  // namespace orvelhost::testing
