// What each effect does to sound, measured on short signals.

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/analysis/hum.h"
#include "host/analysis/noise_profile.h"
#include "host/audio/audio_error.h"
#include "host/effects/effect_catalogue.h"
#include "host/effects/effect_filters.h"
#include "host/effects/filter_check.h"
#include "host/session/host.h"
#include "orvel/orvel.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

using namespace teskaudiofilters;
using Physical = std::map<std::size_t, double>;  // by parameter

NoiseProfile WhiteNoise(double floor) { return {floor, {}}; }

std::vector<FilterSpec> Filters(const std::u16string& effect, const Physical& physical,
                                EffectContext context) {
  const EffectDescription& description = *FindEffect(effect);
  std::vector<float> parameters = InitialParameters(description);
  for (const auto& [index, value] : physical) {
    parameters[index] = static_cast<float>(FromEffectScale(description.parameters[index], value));
  }
  return EffectFilters(effect, parameters, context);
}

AudioBlock Through(const std::u16string& effect, const Physical& physical, const AudioBlock& block,
                   EffectContext context = {}) {
  context.format = block.Format();
  return RunFilters(block, Filters(effect, physical, context));
}

/// By how many dB the effect moves a tone of `frequency` Hz that comes in at `level` dBFS.
double ToneChange(const std::u16string& effect, const Physical& physical, double frequency,
                  double level = -20.0, int sampleRate = 48000) {
  const AudioBlock in = Make(sampleRate, 1, 1.5, Sine(std::pow(10.0, level / 20.0), frequency));
  return ToneInDb(Through(effect, physical, in), frequency, 0.3, 1.2) - level;
}

Physical Points(std::size_t count, std::size_t first,
                const std::vector<std::pair<double, double>>& points) {
  Physical physical = {{count, static_cast<double>(points.size())}};
  for (const auto& [x, y] : points) {
    physical[first++] = x;
    physical[first++] = y;
  }
  return physical;
}

Physical Curve(const std::vector<std::pair<double, double>>& points) {
  return Points(fftfilter::kPointCount, fftfilter::kFirstPoint, points);
}

Physical Levels(const std::vector<std::pair<double, double>>& points) {
  return Points(dynamics::kPointCount, dynamics::kFirstPoint, points);
}

struct Subject {
  const char* name;
  const std::u16string& effect;
  Physical neutral;
  Physical full;
};

std::vector<Subject> Subjects() {
  return {
      {"limiter", kHardLimiterID, {}, {{hardlimiter::kCeiling, -3}, {hardlimiter::kGain, 6}}},
      {"expander", kStereoExpanderID, {}, {{stereoexpander::kWidth, 1}}},
      {"noise", kAdaptiveNoiseReductionID, {{noisereduction::kReduction, 0}}, {}},
      {"hum", kIzotopeDeHummerID, {}, {{dehummer::kHumLevel, -80}}},
      {"sibilance", kIzotopeDeEsserID, {}, {{deesser::kThreshold, -40}}},
      {"rumble", kFFTFilterID, Curve({{20, 0}, {22050, 0}}), Curve({{90, -60}, {100, 0}})},
      {"dynamics", kDynamicsID, Levels({{-100, -100}, {-20, -20}, {0, 0}}),
       Levels({{-100, -60}, {-40, -30}, {0, -20}})},
      {"equalizer", kGraphicEQ10BandsID, {}, {{graphicequalizer::kFirstBand + 5, 25}}},
      {"voice", kIzotopeVocalEnhancerID, {}, {}},
      {"reverb", kStudioReverbID, {}, {{studioreverb::kWet, 100}, {studioreverb::kDecay, 0.2}}},
  };
}

TEST(EveryEffect, LeavesTheSoundAloneAtItsNeutralSettings) {
  for (const Subject& subject : Subjects()) {
    if (subject.effect == kIzotopeVocalEnhancerID) {
      continue;  // each of its voices has a tone
    }
    for (const auto& [sampleRate, channelCount] : {std::pair(44100, 1), {48000, 2}, {96000, 2}}) {
      const AudioBlock signal = Make(sampleRate, channelCount, 0.3, Noise(0.09));
      EXPECT_LT(DifferenceInDb(Through(subject.effect, subject.neutral, signal), signal), -120.0)
          << subject.name << " at " << sampleRate;
    }
  }
}

double Square(double time, int) { return std::fmod(time, 0.01) < 0.005 ? 1.0 : -1.0; }

TEST(EveryEffect, KeepsChannelsLengthAndSenseWhateverItIsGiven) {
  const std::pair<const char*, Signal> signals[] = {
      {"silence", [](double, int) { return 0.0; }},
      {"direct current", [](double, int) { return 0.5; }},
      {"clipped", Square},
  };
  for (const Subject& subject : Subjects()) {
    for (const auto& [name, signal] : signals) {
      for (const auto& [sampleRate, channelCount] :
           {std::pair(8000, 1), {44100, 1}, {48000, 2}, {48000, 6}, {96000, 2}, {192000, 1}}) {
        for (const double seconds : {0.01, 0.15}) {
          SCOPED_TRACE(::testing::Message() << subject.name << " on " << name << " at "
                                            << sampleRate << ", " << channelCount);
          AudioBlock in = Make(sampleRate, channelCount, seconds, signal);
          constexpr std::uint64_t kSides = 0x600;  // as good as any two speakers
          if (channelCount == 2) in = Join({sampleRate, 2, kSides}, {in});
          const auto filters =
              Filters(subject.effect, subject.full, {in.Format(), 50.0, WhiteNoise(-60)});
          const AudioBlock out = RunFilters(in, filters);
          ASSERT_EQ(out.ChannelCount(), channelCount) << "mono stays mono";
          ASSERT_EQ(out.FrameCount(), in.FrameCount() + static_cast<std::size_t>(TailOf(filters)));
          ASSERT_TRUE(std::isfinite(RmsInDb(out)) || name == signals[0].first);
          ASSERT_LT(Peak(out), name == signals[0].first ? 1e-5 : 20.0);
        }
      }
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
      {"square wave", Square},
      {"step from silence", During(0.05, 0.1, Sine(2.0))},
      {"one enormous sample",
       [](double time, int) { return time >= 0.05 && time < 0.05001 ? 1e9 : 0.3; }},
  };
  for (const auto& [name, signal] : signals) {
    for (const auto& [sampleRate, channelCount] : {std::pair(1000, 2), {44100, 6}, {96000, 1}}) {
      const AudioBlock in = Make(sampleRate, channelCount, 0.1, signal);
      for (const auto& [ceiling, gain] : {std::pair(0.0, 0.0), std::pair(-0.1, 50.0),
                                          std::pair(-2.14, 6.0), std::pair(-100.0, 50.0)}) {
        const AudioBlock out = Through(
            kHardLimiterID, {{hardlimiter::kCeiling, ceiling}, {hardlimiter::kGain, gain}}, in);
        ASSERT_EQ(out.FrameCount(), in.FrameCount());
        ASSERT_LE(Peak(out), std::pow(10.0, ceiling / 20.0))
            << name << " at " << sampleRate << " Hz, gain " << gain << ", ceiling " << ceiling;
      }
    }
  }
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

TEST(StereoExpander, ScalesTheSideAndMovesTheMid) {
  const AudioBlock signal = Make(44100, 2, 0.1, Noise(0.7));
  for (const auto& [width, centre] :
       {std::pair(0.0, 0.5), {0.1, 0.0}, {1.0 / 3.0, 0.9}, {0.5, 0.3}, {1.0, 1.0}}) {
    const double side = 3 * width / 2;
    const double toLeft = std::min(1.0, 2 - 2 * centre) / 2;
    const double toRight = std::min(1.0, 2 * centre) / 2;
    const Physical physical = {{stereoexpander::kCentre, centre}, {stereoexpander::kWidth, width}};
    EXPECT_LT(
        DifferenceInDb(Through(kStereoExpanderID, physical, signal),
                       Mix(signal, toLeft + side, toLeft - side, toRight - side, toRight + side)),
        kRounding)
        << "width " << width << ", centre " << centre;
  }
}

TEST(Pan, AttenuatesTheFarChannelAndNeverTheNearOne) {
  for (const int channelCount : {1, 2}) {
    const AudioBlock signal = Make(44100, channelCount, 0.1, Noise(0.7));
    for (const double pan : {-1.0, -0.01, 0.2, 1.0}) {
      const double left = pan > 0 ? 1 - pan : 1;
      const double right = pan < 0 ? 1 + pan : 1;
      EXPECT_LT(DifferenceInDb(RunFilters(signal, PanFilters(pan, channelCount)),
                               Mix(signal, left, 0, 0, right)),
                kRounding)
          << pan << " on " << channelCount;
    }
    EXPECT_TRUE(PanFilters(0.0, channelCount).empty()) << "mono stays mono in the centre";
  }
  EXPECT_TRUE(PanFilters(0.5, 6).empty());
  EXPECT_EQ(PanFilters(7.0, 2), PanFilters(1.0, 2));
  EXPECT_TRUE(PanFilters(std::numeric_limits<double>::quiet_NaN(), 2).empty());
}

TEST(NoiseReduction, TakesNoiseDownByWhatWasAskedHoweverLoudAndOfWhatColourItIs) {
  const std::vector<FilterSpec> telephone(
      4, {"lowpass", {{"frequency", "3000"}, {"precision", "f64"}}});
  for (const double amplitude : {0.9, 0.01, 1e-5}) {
    for (const auto& colour : {std::vector<FilterSpec>(), telephone}) {
      const AudioBlock in = RunFilters(Make(48000, 1, 3.0, Noise(amplitude)), colour);
      EffectContext context{in.Format()};
      context.noise = MeasureNoiseProfile(*OpenerOf(in)(), std::nullopt);
      const AudioBlock out =
          Through(kAdaptiveNoiseReductionID, {{noisereduction::kReduction, 20}}, in, context);
      EXPECT_NEAR(RmsInDb(Between(out, 1.0, 2.0)) - RmsInDb(Between(in, 1.0, 2.0)), -20.0, 1.0)
          << amplitude << (colour.empty() ? "" : " telephone");
    }
  }
}

TEST(DeHummer, TakesEachHarmonicDownByWhatWasAskedAlsoWhenTheMainsAreOff) {
  for (const double mains : {50.0, 50.1, 59.9}) {
    // Between the harmonics, 10 Hz away from them, lies what has to stay.
    const std::vector<double> amplitudes = {0.02, 0.01, 0.007, 0.005, 0.004, 0.003, 0.003, 0.002};
    const AudioBlock in =
        Make(48000, 1, 6.0, Sum({Harmonics(mains, amplitudes), Sine(0.1, 215.0)}));
    HumFinder finder(in.Format());
    finder.Add(in);
    const AudioBlock out =
        Through(kIzotopeDeHummerID,
                {{dehummer::kBaseFrequency, mains < 55 ? 50.0 : 60.0}, {dehummer::kHumLevel, -30}},
                in, {{}, finder.Find().value().frequency});
    for (int harmonic = 1; harmonic <= 8; ++harmonic) {
      EXPECT_NEAR(ToneInDb(out, mains * harmonic, 2, 6) - ToneInDb(in, mains * harmonic, 2, 6),
                  -30.0, 2.0)
          << mains << " " << harmonic;
    }
    EXPECT_NEAR(ToneInDb(out, 215, 2, 6), -20.0, 0.2);
  }
}

TEST(DeHummer, BelievesTheMeasuredFrequencyOnlyNearTheChosenMains) {
  const AudioFormat format = {48000, 1};
  const auto at = [&](std::optional<double> measured) {
    return Filters(kIzotopeDeHummerID, {{dehummer::kBaseFrequency, 50}, {dehummer::kHumLevel, -20}},
                   {format, measured});
  };
  EXPECT_EQ(at(59.95), at(std::nullopt));
  EXPECT_NE(at(50.05), at(std::nullopt));
}

TEST(DeEsser, TurnsItsBandDownAboveTheThresholdUpToTheLimit) {
  const auto change = [](double level, double frequency, double limit) {
    return ToneChange(kIzotopeDeEsserID,
                      {{deesser::kThreshold, -30},
                       {deesser::kCentreFrequency, 5000},
                       {deesser::kBandwidth, 3000},
                       {deesser::kReductionLimit, limit}},
                      frequency, level);
  };
  EXPECT_NEAR(change(-35, 5000, 24), 0.0, 0.1);
  EXPECT_NEAR(change(-20, 5000, 24), -8.0, 0.8) << "10 dB too loud at 5 to 1";
  EXPECT_NEAR(change(-3, 5000, 12), -11.0, 1.0);
  EXPECT_NEAR(change(-6, 300, 24), 0.0, 0.1);
}

TEST(FftFilter, FollowsItsCurveAndTakesRumbleAway) {
  Physical rumble = Curve({{18.39, -60}, {91.88, -60}, {103.37, 0}, {22050, 0}});
  for (const auto& [phase, sampleRate] : {std::pair(0.0, 44100), {1.0, 44100}, {1.0, 96000}}) {
    rumble[fftfilter::kMinimumPhase] = phase;
    for (const double frequency : {15, 29, 200, 4000}) {
      const double change = ToneChange(kFFTFilterID, rumble, frequency, -14.0, sampleRate);
      EXPECT_TRUE(frequency < 100 ? change < -40.0 : std::abs(change) < 0.05) << frequency;
    }
  }
}

TEST(GraphicEqualizer, EachBandHasItsGain) {
  constexpr double kCentres[] = {31.5, 63, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
  for (const auto& [range, sampleRate] : {std::pair(12.0, 44100), {24.0, 96000}}) {
    Physical physical = {{graphicequalizer::kRange, range}};
    for (std::size_t band = 0; band < 10; ++band) {
      physical[graphicequalizer::kFirstBand + band] = band % 2 == 0 ? 50.0 : -50.0;
    }
    for (std::size_t band = 0; band < 10; ++band) {
      EXPECT_NEAR(ToneChange(kGraphicEQ10BandsID, physical, kCentres[band], -26.0, sampleRate),
                  (band % 2 == 0 ? 0.5 : -0.5) * range, 0.5)
          << kCentres[band];
    }
  }
}

TEST(Dynamics, PutsEachLevelWhereTheCurveSays) {
  Physical physical = Levels({{-100, -100}, {-60, -70}, {-30, -20}, {0, -6}});
  physical[dynamics::kDetectorAttack] = 1;
  physical[dynamics::kGainAttack] = 1;
  for (const double makeUp : {0.0, 1.0}) {
    physical[dynamics::kMakeUp] = makeUp;
    for (const auto& [in, out] :
         {std::pair(-60.0, -70.0), {-45.0, -45.0}, {-30.0, -20.0}, {-10.0, -10.67}}) {
      const AudioBlock tone = Make(48000, 2, 2.4, Sine(std::pow(10.0, in / 20.0), 1000));
      const double measured = ToneInDb(Through(kDynamicsID, physical, tone), 1000, 2.0, 2.4);
      EXPECT_NEAR(measured, out + (makeUp > 0 ? 6.0 : 0.0), 1.0) << in;
    }
  }
}

TEST(Dynamics, OfSeveralPointsAtOneInputTheLastOneCounts) {
  const AudioFormat format = {48000, 1};
  EXPECT_EQ(Filters(kDynamicsID, Levels({{-50, -20}, {-50, -60}, {0, 0}}), {format}),
            Filters(kDynamicsID, Levels({{-50, -60}, {0, 0}}), {format}));
}

TEST(VocalEnhancer, BringsOutEachVoiceInItsPlace) {
  const auto change = [](double voice, double frequency) {
    return ToneChange(kIzotopeVocalEnhancerID, {{vocalenhancer::kVoice, voice}}, frequency);
  };
  constexpr double kLow = 0, kHigh = 1, kMusic = 2;
  EXPECT_GT(change(kLow, 2800), 2.5);
  EXPECT_GT(change(kHigh, 4000), 2.5);
  EXPECT_LT(change(kMusic, 2200), -2.5);
  EXPECT_LT(change(kHigh, 60), change(kLow, 60) - 5.0) << "a low voice keeps more below";
}

/// Seconds in which a decay falls by 60 dB, from its fall between -5 and -35 dB (ISO 3382).
double DecayTime(const AudioBlock& block) {
  const std::span<const float> samples = block.Channel(0);
  std::vector<double> left(samples.size());
  double energy = 0.0;
  for (std::size_t frame = samples.size(); frame-- > 0;) {
    left[frame] = energy += static_cast<double>(samples[frame]) * samples[frame];
  }
  const auto below = [&](double level) {
    return std::ranges::find_if(left,
                                [&](double at) { return at < energy * std::pow(10, level / 10); });
  };
  return 2.0 * static_cast<double>(below(-35) - below(-5)) / block.Format().sampleRate;
}

std::vector<FilterSpec> OctaveAt(double frequency) {
  const FilterSpec band = {
      "bandpass", {{"frequency", std::to_string(frequency)}, {"width_type", "o"}, {"width", "1"}}};
  return {band, band};
}

AudioBlock ReverbOfAnImpulse(int sampleRate, int channelCount, Physical physical) {
  physical.merge(Physical{{studioreverb::kDry, 0},
                          {studioreverb::kWet, 100},
                          {studioreverb::kEarlyReflections, 0},
                          {studioreverb::kPreDelay, 0}});
  return Through(kStudioReverbID, physical,
                 Make(sampleRate, channelCount, 0.05,
                      [](double time, int) { return time == 0.0 ? 1.0 : 0.0; }));
}

TEST(StudioReverb, DecaysAsLongAsAskedAndTheTailIsKept) {
  for (const auto& [decay, sampleRate, channelCount] :
       {std::tuple(0.15, 44100, 2), {0.6, 48000, 1}, {1.6, 96000, 2}, {6.9, 44100, 1}}) {
    const AudioBlock out =
        ReverbOfAnImpulse(sampleRate, channelCount, {{studioreverb::kDecay, decay}});
    EXPECT_NEAR(DecayTime(RunFilters(out, OctaveAt(1000))) / decay, 1.0, 0.12) << decay;
    const double length = static_cast<double>(out.FrameCount()) / sampleRate;
    EXPECT_GT(RmsInDb(Between(out, 0.0, decay / 2)) - RmsInDb(Between(out, length - 0.02, length)),
              60.0);
  }
}

TEST(StudioReverb, LowAndHighTonesDecayInTheirOwnTimes) {
  const auto ratio = [](Physical physical, double frequency) {
    physical[studioreverb::kDecay] = 1.5;
    const AudioBlock out = ReverbOfAnImpulse(48000, 2, physical);
    return DecayTime(RunFilters(out, OctaveAt(frequency))) /
           DecayTime(RunFilters(out, OctaveAt(1000)));
  };
  EXPECT_NEAR(ratio({{studioreverb::kBassRatio, 1.6}}, 125), 1.6, 0.2);
  EXPECT_NEAR(ratio({{studioreverb::kBassRatio, 0.7}}, 125), 0.7, 0.2);
  EXPECT_LT(ratio({{studioreverb::kDamping, 70}}, 4000),
            ratio({{studioreverb::kDamping, 10}}, 4000) - 0.2);
}

TEST(StudioReverb, DryAndWetAreEquallyLoudAtEqualShares) {
  const AudioBlock in = Make(48000, 2, 2.5, Noise(0.2));
  for (const auto& [early, diffusion] : {std::pair(0.0, 0.0), {0.0, 100.0}, {100.0, 100.0}}) {
    const AudioBlock out = Through(kStudioReverbID,
                                   {{studioreverb::kDry, 0},
                                    {studioreverb::kWet, 100},
                                    {studioreverb::kDecay, 1.0},
                                    {studioreverb::kEarlyReflections, early},
                                    {studioreverb::kDiffusion, diffusion},
                                    {studioreverb::kHighCut, 20000}},
                                   in);
    EXPECT_NEAR(RmsInDb(Between(out, 1.5, 2.5)), RmsInDb(in), 4.0);
  }
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

TEST(Effects, WhatThisMachineLacksIsNamedAtTheStart) {
  EXPECT_THAT(CheckFilters(), ::testing::IsEmpty());
  EXPECT_THAT(
      [] {
        FilterGraph({48000, 2}, {{"ladspa", {{"file", "/no"}, {"plugin", "X"}}}});
      },
      ::testing::ThrowsMessage<AudioError>(::testing::HasSubstr("'X' of '/no' is missing")));
}

TEST(Effects, OneThatIsNotInTheCatalogueIsAnErrorAndNotSilence) {
  EXPECT_THROW(EffectFilters(u"no such effect", {}, {{48000, 2}}), AudioError);
  const Host host;
  using teskaudiofilterhost::utility::CreateAudioFilter;
  EXPECT_NE(CreateAudioFilter(teskaudiofilters::kStereoExpanderID), nullptr);
  EXPECT_EQ(CreateAudioFilter(u"no such effect"), nullptr);
}

}  // namespace
}  // namespace orvelhost::testing
