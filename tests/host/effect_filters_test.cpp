#include "host/effects/effect_filters.h"

#include <algorithm>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/audio/audio_error.h"
#include "host/effects/effect_catalogue.h"
#include "host/effects/filter_check.h"
#include "host/session/host.h"
#include "orvel/orvel.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

std::vector<FilterSpec> Limiter(double ceiling, double gain, int channelCount) {
  const float parameters[] = {static_cast<float>((ceiling + 100.0) / 100.0),
                              static_cast<float>((gain + 100.0) / 150.0)};
  return EffectFilters(teskaudiofilters::kHardLimiterID, parameters, {{48000, channelCount}});
}

std::vector<FilterSpec> Expander(double centre, double width, int channelCount = 2) {
  const float parameters[] = {static_cast<float>(centre), static_cast<float>(width)};
  return EffectFilters(teskaudiofilters::kStereoExpanderID, parameters, {{48000, channelCount}});
}

/// The block with its channels mixed by a matrix, as a reference.
AudioBlock Mix(const AudioBlock& in, double ll, double lr, double rl, double rr) {
  AudioFormat format = in.Format();
  format.channelCount = 2;
  AudioBlock out(format, in.FrameCount());
  const std::span<const float> left = in.Channel(0);
  const std::span<const float> right = in.Channel(in.ChannelCount() - 1);
  for (std::size_t frame = 0; frame < in.FrameCount(); ++frame) {
    out.Channel(0)[frame] = static_cast<float>(ll * left[frame] + lr * right[frame]);
    out.Channel(1)[frame] = static_cast<float>(rl * left[frame] + rr * right[frame]);
  }
  return out;
}

constexpr double kRounding = -118.0;  // of single precision, at amplitudes up to a few times 1

TEST(HardLimiter, GainIsRightWhileTheCeilingIsNotReached) {
  const AudioBlock signal = Make(44100, 2, 0.25, Sine(0.25));
  for (const double gain : {-100.0, -60.0, -15.0, -6.0, -0.1, 0.1, 3.0, 6.0, 11.9}) {
    for (const double ceiling : {0.0, -0.1}) {
      SCOPED_TRACE(::testing::Message() << gain << " dB under " << ceiling << " dB");
      const AudioBlock out = RunFilters(signal, Limiter(ceiling, gain, 2));
      EXPECT_NEAR(RmsInDb(out) - RmsInDb(signal), gain, 0.01);
    }
  }
}

TEST(HardLimiter, CeilingIsNeverExceeded) {
  const std::pair<const char*, Signal> signals[] = {
      {"loud noise", Noise(4.0)},
      {"impulses",
       [](double time, int channel) {
         return std::fmod(time, 0.011) < 0.0002 ? (channel == 0 ? 3.0 : -3.0) : 0.0;
       }},
      {"square wave", [](double time, int) { return std::fmod(time, 0.01) < 0.005 ? 1.0 : -1.0; }},
      {"step from silence",
       [](double time, int channel) { return time < 0.05 ? 0.0 : Sine(2.0)(time, channel); }},
      {"one enormous sample",
       [](double time, int) { return time >= 0.05 && time < 0.05001 ? 1e9 : 0.3; }},
  };
  for (const auto& [name, signal] : signals) {
    for (const int sampleRate : {1000, 44100, 48000, 96000}) {
      for (const int channelCount : {1, 2, 6}) {
        const AudioBlock in = Make(sampleRate, channelCount, 0.1, signal);
        for (const auto& [ceiling, gain] : {std::pair(0.0, 0.0), std::pair(-0.1, 50.0),
                                            std::pair(-2.14, 6.0), std::pair(-100.0, 50.0)}) {
          const AudioBlock out = RunFilters(in, Limiter(ceiling, gain, channelCount));
          ASSERT_EQ(out.FrameCount(), in.FrameCount());
          ASSERT_LE(Peak(out), std::pow(10.0, ceiling / 20.0))
              << name << " at " << sampleRate << " Hz, " << channelCount << " channels, gain "
              << gain << ", ceiling " << ceiling;
        }
      }
    }
  }
}

TEST(StereoExpander, ScalesTheSideAndMovesTheMid) {
  const AudioBlock signal = Make(44100, 2, 0.1, Noise(0.7));
  for (const double width : {0.0, 0.1, 1.0 / 3.0, 0.5, 1.0}) {
    for (const double centre : {0.0, 0.3, 0.5, 0.9, 1.0}) {
      SCOPED_TRACE(::testing::Message() << "width " << width << ", centre " << centre);
      const double side = 3 * width / 2;
      const double toLeft = std::min(1.0, 2 - 2 * centre) / 2;
      const double toRight = std::min(1.0, 2 * centre) / 2;
      EXPECT_LT(
          DifferenceInDb(RunFilters(signal, Expander(centre, width)),
                         Mix(signal, toLeft + side, toLeft - side, toRight - side, toRight + side)),
          kRounding);
    }
  }
}

TEST(StereoExpander, WidthZeroGivesEqualChannels) {
  const AudioBlock out = RunFilters(Make(44100, 2, 0.1, Noise(0.7)), Expander(0.5, 0.0));
  EXPECT_TRUE(std::ranges::equal(out.Channel(0), out.Channel(1)));
}

TEST(StereoExpander, LeavesOtherThanStereoAlone) {
  EXPECT_TRUE(Expander(0.2, 0.9, 1).empty());
  EXPECT_TRUE(Expander(0.2, 0.9, 6).empty());
}

TEST(Pan, AttenuatesTheFarChannelAndNeverTheNearOne) {
  for (const int channelCount : {1, 2}) {
    const AudioBlock signal = Make(44100, channelCount, 0.1, Noise(0.7));
    for (const double pan : {-1.0, -0.5, -0.01, 0.2, 1.0}) {
      SCOPED_TRACE(::testing::Message() << pan << " on " << channelCount);
      const double left = pan > 0 ? 1 - pan : 1;
      const double right = pan < 0 ? 1 + pan : 1;
      EXPECT_LT(DifferenceInDb(RunFilters(signal, PanFilters(pan, channelCount)),
                               Mix(signal, left, 0, 0, right)),
                kRounding);
    }
    EXPECT_TRUE(PanFilters(0.0, channelCount).empty()) << "mono stays mono in the centre";
  }
  EXPECT_TRUE(PanFilters(0.5, 6).empty());
  EXPECT_EQ(PanFilters(7.0, 2), PanFilters(1.0, 2));
  EXPECT_TRUE(PanFilters(std::numeric_limits<double>::quiet_NaN(), 2).empty());
}

TEST(Effects, ParametersOutsideTheirRangeAreLimitedAndMissingOnesInitial) {
  const std::u16string& limiter = teskaudiofilters::kHardLimiterID;
  const auto filters = [&](std::vector<float> parameters) {
    return EffectFilters(limiter, parameters, {{48000, 2}});
  };
  const float noNumber = std::numeric_limits<float>::quiet_NaN();
  const std::vector<float> initial = InitialParameters(*FindEffect(limiter));
  EXPECT_EQ(filters({-1.0f, 9.0f}), filters({0.0f, 1.0f}));
  EXPECT_EQ(filters({noNumber, noNumber}), filters(initial));
  EXPECT_EQ(filters({}), filters(initial));
}

TEST(Effects, OneThatThisHostCannotRunIsAnErrorAndNotSilence) {
  EXPECT_THROW(EffectFilters(u"no such effect", {}, {{48000, 2}}), AudioError);
}

TEST(Effects, WhatThisMachineLacksIsNamedAtTheStart) {
  EXPECT_THAT(CheckFilters(), ::testing::IsEmpty());
  EXPECT_THAT(
      [] {
        FilterGraph({48000, 2}, {{"ladspa", {{"file", "/no"}, {"plugin", "X"}}}});
      },
      ::testing::ThrowsMessage<AudioError>(::testing::HasSubstr("'X' of '/no' is missing")));
}

TEST(Effects, TheLibraryCanCreateThoseOfTheCatalogueOnly) {
  const Host host;
  using teskaudiofilterhost::utility::CreateAudioFilter;
  EXPECT_NE(CreateAudioFilter(teskaudiofilters::kHardLimiterID), nullptr);
  EXPECT_NE(CreateAudioFilter(teskaudiofilters::kStereoExpanderID), nullptr);
  EXPECT_EQ(CreateAudioFilter(u"no such effect"), nullptr);
}

}  // namespace
}  // namespace orvelhost::testing
