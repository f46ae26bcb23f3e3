#include "host/analysis/hum.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

std::optional<Hum> FindHum(const AudioBlock& audio) {
  HumFinder finder(audio.Format());
  finder.Add(audio);
  return finder.Find();
}

TEST(HumFinder, MeasuresTheBaseWithinTwoHundredthsOfAHertzUnderNoise) {
  const struct {
    int sampleRate;
    int channelCount;
    double base;
    std::vector<double> amplitudes;
    double noise;
  } cases[] = {
      {44100, 1, 50.1, {0.01}, 0.03},
      {48000, 2, 49.9, {0.01, 0.005, 0.004}, 0.03},
      {96000, 1, 59.95, {0.003, 0.0, 0.003}, 0.02},
      {8000, 1, 60.1, {0.01, 0.01}, 0.02},
      {48000, 1, 50.05, {0.0, 0.01, 0.0, 0.005}, 0.02},  // of a rectifier: no base, even harmonics
      {44100, 1, 50.25, {0.01, 0.01, 0.01, 0.01, 0.01, 0.01, 0.01, 0.01}, 0.0},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.base);
    const auto hum = FindHum(Make(one.sampleRate, one.channelCount, 5.0,
                                  Sum({Harmonics(one.base, one.amplitudes), Noise(one.noise)})));
    ASSERT_TRUE(hum.has_value());
    EXPECT_NEAR(hum->frequency, one.base, 0.02);
    double power = 0.0;
    for (const double amplitude : one.amplitudes) power += amplitude * amplitude / 2;
    EXPECT_NEAR(hum->level, 10.0 * std::log10(power), 0.5);
  }
}

TEST(HumFinder, HumBesideDigitalSilenceIsAsLoudAsItIs) {
  const Signal hum = Sum({Harmonics(60.0, {0.01, 0.01}), Noise(0.001)});
  const auto found = FindHum(Make(48000, 1, 10.0, During(2.0, 6.0, hum)));
  ASSERT_TRUE(found.has_value());
  EXPECT_NEAR(found->level, -40.0, 0.5);
}

TEST(HumFinder, HearsHumBehindSpeechAndInOpposedChannels) {
  const Signal words = [](double time, int) {
    const double turn = 110.0 * time - 6.0 * std::cos(5.0 * time);
    const double inWord = std::min(std::fmod(time, 1.0) / 0.7, 1.0);
    return 0.3 * std::pow(std::sin(std::numbers::pi * inWord), 2) *
           std::sin(2 * std::numbers::pi * turn);
  };
  const Signal hum = [](double time, int channel) {
    return (channel == 0 ? 1.0 : -1.0) * Harmonics(60.07, {0.003, 0.002, 0.002})(time, 0);
  };
  const auto found = FindHum(Make(48000, 2, 8.0, Sum({words, hum, Noise(0.001)})));
  ASSERT_TRUE(found.has_value());
  EXPECT_NEAR(found->frequency, 60.07, 0.02);
}

TEST(HumFinder, TakesNothingElseForHum) {
  const std::pair<const char*, Signal> cases[] = {
      {"noise", Noise(0.1)},
      {"chords and drums", ChordLoop()},
      {"a low G", Harmonics(49.0, {0.2, 0.1, 0.05})},
      {"a low A sharp", Harmonics(58.27, {0.2, 0.1, 0.05})},
      {"a tone that two mains have as harmonic", Sine(0.2, 300.0)},
      {"a bass that pauses", Sum({During(0.0, 2.5, Sine(0.2, 50.0)), Noise(0.001)})},
      {"a gliding voice",
       [](double time, int) {
         return 0.3 * std::sin(2 * std::numbers::pi * (90.0 * time + 4.0 * time * time));
       }},
  };
  for (const auto& [name, signal] : cases) {
    EXPECT_FALSE(FindHum(Make(44100, 1, 6.0, signal)).has_value()) << name;
  }
  EXPECT_FALSE(FindHum(Make(44100, 1, 1.5, Harmonics(50.0, {0.1}))).has_value()) << "too short";
}

}  // namespace
}  // namespace orvelhost::testing
