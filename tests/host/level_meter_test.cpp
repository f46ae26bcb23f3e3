#include "host/audio/level_meter.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

Levels Measure(const AudioBlock& block) {
  LevelMeter meter(block.Format());
  meter.Add(block);
  return meter.Measure();
}

TEST(LevelMeter, MeasuresLoudnessAsTheStandardsTestSignalsDemand) {
  // EBU Tech 3341, test cases 1 and 2: 1 kHz in both channels reads as its peak level, within 0.1.
  for (const double level : {-23.0, -33.0}) {
    const double amplitude = std::pow(10.0, level / 20.0);
    const AudioBlock tone =
        Make(48000, 2, 2.0, [=](double time, int) { return Sine(amplitude, 1000.0)(time, 0); });
    EXPECT_NEAR(Measure(tone).loudness, level, 0.1);
  }
}

TEST(LevelMeter, ChannelsCountByTheSpeakerThatTheyAreFor) {
  // The channel masks of front left and right with low frequency effects, and with side left.
  const auto loudness = [](std::uint64_t speakers, double third) {
    AudioBlock tone({48000, 3, speakers}, 96000);
    for (int channel = 0; channel < 3; ++channel) {
      const auto sine = Sine(channel == 2 ? third : 0.1, 1000.0);
      double time = 0.0;
      for (float& sample : tone.Channel(channel)) {
        sample = static_cast<float>(sine(time, 0));
        time += 1.0 / 48000;
      }
    }
    return Measure(tone).loudness;
  };
  const double fronts = loudness(0x1 | 0x2 | 0x8, 0.0);
  EXPECT_NEAR(loudness(0x1 | 0x2 | 0x8, 0.9), fronts, 0.01) << "effects are no loudness";
  // 1.41 times the power of a third of three (ITU-R BS.1770-4).
  EXPECT_NEAR(loudness(0x1 | 0x2 | 0x200, 0.1), fronts + 10.0 * std::log10(3.41 / 2.0), 0.01);
}

TEST(LevelMeter, TruePeakFindsWhatLiesBetweenSamples) {
  // A quarter of the rate, sampled at 45 degrees beside the crests.
  const AudioBlock tone = Make(
      48000, 1, 0.2, [](double time, int) { return Sine(0.5, 12000.0)(time + 1.0 / 96000, 0); });
  const Levels levels = Measure(tone);
  EXPECT_NEAR(levels.samplePeak, -9.03, 0.01);
  EXPECT_NEAR(levels.truePeak, -6.02, 0.3);
}

TEST(LevelMeter, WidthIsTheEnergyOfTheSideAgainstTheMid) {
  const auto width = [](double left, double right) {
    return *Measure(Make(48000, 2, 0.1, [=](double time, int channel) {
              return (channel == 0 ? left : right) * Sine(1.0)(time, 0);
            })).width;
  };
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_NEAR(width(0.5, 0.0), 0.0, 0.001);
  EXPECT_NEAR(width(0.5, 0.25), 20 * std::log10(1.0 / 3), 0.001);
  EXPECT_EQ(width(0.5, 0.5), -infinity);
  EXPECT_EQ(width(0.5, -0.5), infinity);
  EXPECT_EQ(width(0.0, 0.0), -infinity);
  EXPECT_FALSE(Measure(Make(48000, 1, 0.1, Sine(0.5))).width.has_value());
}

TEST(LevelMeter, SilenceAndTheLoudnessAtRatesWithoutAWeightingMeasureAsMinusInfinity) {
  const Levels levels = Measure(Make(48000, 2, 1.0, Sine(0.0)));
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(levels.loudness, -infinity);
  EXPECT_EQ(levels.samplePeak, -infinity);
  EXPECT_EQ(levels.truePeak, -infinity);
  for (const int rate : {1000, 1700, 2000, 3363}) {
    const Levels slow = Measure(Make(rate, 2, 4.0, Sine(0.5, 100)));
    EXPECT_EQ(slow.loudness, -infinity) << rate;
    EXPECT_EQ(slow.loudnessRange, 0.0) << rate;
  }
  EXPECT_NEAR(Measure(Make(3364, 2, 4.0, Sine(0.5, 100))).loudness, -6.0, 2.0);
}

}  // namespace
}  // namespace orvelhost::testing
