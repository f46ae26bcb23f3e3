#include "host/analysis/clip_analysis.h"

#include <bit>
#include <limits>

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

constexpr double kMinusInfinity = -std::numeric_limits<double>::infinity();

ClipAnalysis Analyze(const AudioBlock& audio) { return AnalyzeClip(*OpenerOf(audio)()); }

double Amplitude(double decibels) { return std::pow(10.0, decibels / 20.0); }

TEST(ClipAnalysis, MeasuresASineAsTheStandardsSayAtEveryRate) {
  for (const int sampleRate : {44100, 48000, 96000}) {
    for (const int channelCount : {1, 2}) {
      const ClipAnalysis clip = Analyze(Make(sampleRate, channelCount, 4.0, Sine(0.1)));
      // BS.1770-4: 997 Hz at 0 dBFS in one channel reads as -3.01; a second one doubles the energy.
      EXPECT_NEAR(clip.loudness, channelCount == 1 ? -23.01 : -20.0, 0.02);
      EXPECT_NEAR(clip.loudnessRange, 0.0, 0.1);
      EXPECT_NEAR(clip.samplePeak, -20.0, 0.01);
      EXPECT_NEAR(clip.truePeak, -20.0, 0.1);
      EXPECT_FALSE(clip.hum.has_value());
    }
  }
}

TEST(ClipAnalysis, PeaksBetweenSamplesAndTheLoudnessRangeAreMeasured) {
  // A quarter of the rate, sampled at 45 degrees beside the crests.
  const ClipAnalysis levels = Analyze(Make(
      48000, 1, 0.2, [](double time, int) { return Sine(0.5, 12000.0)(time + 1.0 / 96000, 0); }));
  EXPECT_NEAR(levels.samplePeak, -9.03, 0.01);
  EXPECT_NEAR(levels.truePeak, -6.02, 0.3);
  // EBU Tech 3342, test case 1, with shorter parts: 1 kHz at -20 dBFS, then at -30.
  const Signal parts =
      Sum({During(0.0, 8.0, Sine(0.1, 1000.0)), During(8.0, 16.0, Sine(0.0316, 1000.0))});
  EXPECT_NEAR(Analyze(Make(48000, 2, 16.0, parts)).loudnessRange, 10.0, 1.0);
}

TEST(ClipAnalysis, ChannelsCountByTheSpeakerThatTheyAreFor) {
  // The channel masks of front left and right with low frequency effects, and with side left.
  const auto loudness = [](std::uint64_t speakers, double third) {
    const int count = std::popcount(speakers);
    const AudioBlock tone = Make(48000, count, 2.0, [third](double time, int channel) {
      return Sine(channel == 2 ? third : 0.1, 1000.0)(time, 0);
    });
    return Analyze(Join({48000, count, speakers}, {tone})).loudness;
  };
  const double fronts = loudness(0x1 | 0x2 | 0x8, 0.0);
  EXPECT_NEAR(loudness(0x1 | 0x2 | 0x8, 0.9), fronts, 0.01) << "effects are no loudness";
  // 1.41 times the power to the sides (ITU-R BS.1770-4): side left, wide left, back left where it
  // stands for that, and neither back left behind it, here the second, nor back centre. 22.2 has
  // four of them, the front ones too.
  const std::pair<std::uint64_t, double> thirds[] = {
      {0x1 | 0x2 | 0x200, 3.41}, {0x1 | 0x2 | 0x80000000, 3.41}, {0x1f80003ffff, 18 + 4 * 1.41},
      {0x1 | 0x2 | 0x10, 3.41},  {0x1 | 0x10 | 0x200, 3.41},     {0x1 | 0x2 | 0x100, 3.0}};
  for (const auto& [speakers, power] : thirds) {
    EXPECT_NEAR(loudness(speakers, 0.1), fronts + 10.0 * std::log10(power / 2.0), 0.01) << speakers;
  }
}

TEST(ClipAnalysis, WidthIsTheEnergyOfTheSideAgainstTheMid) {
  const auto width = [](double left, double right) {
    return *Analyze(Make(48000, 2, 0.1, [=](double time, int channel) {
              return (channel == 0 ? left : right) * Sine(1.0)(time, 0);
            })).width;
  };
  EXPECT_NEAR(width(0.5, 0.0), 0.0, 0.001);
  EXPECT_NEAR(width(0.5, 0.25), 20 * std::log10(1.0 / 3), 0.001);
  EXPECT_EQ(width(0.5, 0.5), kMinusInfinity);
  EXPECT_EQ(width(0.5, -0.5), -kMinusInfinity);
  EXPECT_EQ(width(0.0, 0.0), kMinusInfinity);
  EXPECT_FALSE(Analyze(Make(48000, 1, 0.1, Sine(0.5))).width.has_value());
}

TEST(ClipAnalysis, LoudnessAtRatesWithoutAWeightingIsMinusInfinity) {
  for (const int rate : {1000, 1700, 2000, 3363}) {
    EXPECT_EQ(Analyze(Make(rate, 2, 4.0, Sine(0.5, 100))).loudness, kMinusInfinity) << rate;
  }
  EXPECT_NEAR(Analyze(Make(3364, 2, 4.0, Sine(0.5, 100))).loudness, -6.0, 2.0);
}

TEST(ClipAnalysis, TheNoiseFloorIsThatOfThePausesWhateverTheOffsetAndTheGaps) {
  // Even noise has an RMS of its amplitude less 4.77 dB.
  const Signal noise = Noise(Amplitude(-60.0));
  const Signal word = During(0.5, 2.5, Sine(0.3, 300.0));
  for (const double offset : {0.0, 0.1}) {
    const Signal direct = [=](double, int) { return offset; };
    EXPECT_NEAR(Analyze(Make(48000, 2, 3.0, Sum({noise, word, direct}))).noiseFloor, -64.77, 0.5);
  }
  const AudioBlock audio = Make(44100, 1, 4.0, During(0.0, 3.0, Noise(Amplitude(-40.0))));
  EXPECT_NEAR(Analyze(audio).noiseFloor, -44.77, 0.5);
}

TEST(ClipAnalysis, DynamicsAreBetweenTheLoudAndTheQuietPartsWithoutPauses) {
  const Signal speech = [](double time, int) {
    const double inPhrase = std::fmod(time, 2.0);
    return Amplitude(inPhrase < 0.8 ? -10.0 : -25.0) * (inPhrase < 1.4 ? 1.0 : 0.0) *
           Sine(1.0, 400.0)(time, 0);
  };
  const auto levels = Analyze(Make(48000, 1, 6.0, Sum({speech, Noise(Amplitude(-60.0))}))).dynamics;
  ASSERT_TRUE(levels.has_value());
  EXPECT_NEAR(levels->upper, -10.0f, 0.5f);
  EXPECT_NEAR(levels->lower, -25.0f, 0.5f);
  // Without pauses nothing is taken for one.
  const auto steady = Analyze(Make(48000, 1, 2.0, Sine(Amplitude(-20.0)))).dynamics;
  EXPECT_NEAR(steady->lower, -20.0f, 0.2f);
}

TEST(ClipAnalysis, SilenceAndOffsetsHaveNoLevels) {
  const ClipAnalysis silence = Analyze(Make(48000, 2, 3.0, Sine(0.0)));
  for (const double level : {silence.loudness, silence.truePeak, silence.noiseFloor}) {
    EXPECT_EQ(level, kMinusInfinity);
  }
  EXPECT_FALSE(silence.dynamics.has_value());
  const ClipAnalysis offset = Analyze(Make(48000, 1, 3.0, [](double, int) { return 0.5; }));
  EXPECT_EQ(offset.noiseFloor, kMinusInfinity);
  EXPECT_FALSE(offset.hum.has_value());
}

TEST(ClipAnalysis, TenMillisecondsAreMeasuredAsFarAsTheyGo) {
  const ClipAnalysis clip = Analyze(Make(44100, 2, 0.01, Sine(0.5)));
  EXPECT_EQ(clip.frameCount, 441);
  EXPECT_NEAR(clip.samplePeak, -6.02, 0.05);
  EXPECT_NEAR(clip.noiseFloor, -9.03, 0.1);
  EXPECT_NEAR(clip.dynamics->upper, -6.02f, 0.05f);
  EXPECT_EQ(clip.loudness, kMinusInfinity);
}

TEST(ClipAnalysis, EndsWhenProgressSaysSoAndCanBeDoneAnew) {
  const AudioOpener open = OpenerOf(Make(48000, 1, 2.0, Sine(0.1)));
  double last = -1.0;
  const Progress half = [&last](double done) {
    EXPECT_GE(done, last);
    last = done;
    return done < 0.5;
  };
  EXPECT_THROW(AnalyzeClip(*open(), half), Cancelled);
  EXPECT_NEAR(last, 0.5, 0.1);
  EXPECT_NEAR(AnalyzeClip(*open()).loudness, -23.01, 0.05);
}

}  // namespace
}  // namespace orvelhost::testing
