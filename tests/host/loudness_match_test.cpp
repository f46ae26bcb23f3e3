#include "host/analysis/loudness_match.h"

#include <limits>

#include <gtest/gtest.h>

namespace orvelhost::testing {
namespace {

TEST(MatchLoudness, ReachesTheTargetUnlessTheCeilingForbids) {
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    double loudness, truePeak;
    LoudnessTarget target;
    double gain;
    AnalysisStatus status;
  } cases[] = {
      // loudness  peak  target  ceiling  gain  status
      {-30.0, -15.0, {-23.0, -1.0}, 7.0, kAnalysis_Done},
      {-14.0, 0.5, {-23.0, -1.0}, -9.0, kAnalysis_Done},
      {-30.0, -5.0, {-23.0, -1.0}, 4.0, kAnalysis_CeilingLimits},
      {-23.0, 1.0, {-23.0, -1.0}, -2.0, kAnalysis_CeilingLimits},
      {-30.0, -8.0, {-23.0, -1.0}, 7.0, kAnalysis_Done},  // exactly at the ceiling
      {-infinity, -infinity, {}, 0.0, kAnalysis_NotMeasurable},
      {-infinity, -3.0, {}, 0.0, kAnalysis_NotMeasurable},  // too short to be measured
      {-440.0, -428.0, {}, 0.0, kAnalysis_NotMeasurable},   // what a reverb makes of silence
  };
  for (const auto& one : cases) {
    const LoudnessMatch match = MatchLoudness(one.loudness, one.truePeak, one.target);
    EXPECT_DOUBLE_EQ(match.gain, one.gain);
    EXPECT_EQ(match.status, one.status);
    EXPECT_EQ(match.reached,
              one.status == kAnalysis_NotMeasurable ? -infinity : one.loudness + one.gain);
  }
}

}  // namespace
}  // namespace orvelhost::testing
