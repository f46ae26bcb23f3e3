#include "host/analysis/noise_profile.h"

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

std::optional<NoiseProfile> Measure(const AudioBlock& audio, const std::optional<Hum>& hum = {}) {
  return MeasureNoiseProfile(*OpenerOf(audio)(), hum);
}

/// Noise that falls by 6 dB an octave above 1 kHz.
Signal DarkNoise(double amplitude, int sampleRate) {
  const double share = 2 * std::numbers::pi * 1000.0 / sampleRate;
  return [=, noise = Noise(amplitude), last = 0.0](double time, int channel) mutable {
    return last += share * (noise(time, channel) - last);
  };
}

/// From 3 s on, without the lows that are the rumble filter's.
double PauseInDb(const AudioBlock& audio) {
  const AudioBlock highs =
      RunFilters(audio, {{"highpass", {{"frequency", "100"}}}, {"atrim", {{"start", "3"}}}}, 4800);
  return RmsInDb(highs);
}

TEST(NoiseProfile, LetsTheNoiseFilterTakeFromPausesWhatWasAskedAndNothingFromSpeech) {
  for (const bool dark : {false, true}) {
    for (const int sampleRate : {44100, 48000}) {
      SCOPED_TRACE(dark ? "dark" : "white");
      const Signal noise = dark ? DarkNoise(0.02, sampleRate) : Noise(0.003);
      const Signal voice = During(0.0, 2.5, Harmonics(180.0, {0.1, 0.08, 0.06, 0.04, 0.02}));
      const AudioBlock audio = Make(sampleRate, 1, 5.0, Sum({noise, voice}));
      const auto profile = Measure(audio);
      ASSERT_TRUE(profile.has_value());
      const AudioBlock cleaned =
          RunFilters(audio, {{"afftdn",
                              {{"noise_type", "custom"},
                               {"noise_reduction", "12"},
                               {"noise_floor", std::to_string(profile->floor)},
                               {"band_noise", BandNoiseText(*profile)}}}});
      EXPECT_NEAR(PauseInDb(cleaned) - PauseInDb(audio), -12.0, 0.5);
      const std::size_t spoken = static_cast<std::size_t>(2.4 * sampleRate);
      EXPECT_NEAR(RmsInDb(Head(cleaned, spoken)), RmsInDb(Head(audio, spoken)), 0.1);
    }
  }
}

TEST(NoiseProfile, IsTakenFromTheQuietestStretchWithoutRumbleAndHum) {
  const Signal noise = Noise(0.01);
  const auto clean = Measure(Make(48000, 1, 1.0, noise));
  const Signal troubles =
      Sum({noise, Sine(0.3, 15.0), Harmonics(50.1, {0.05, 0.03, 0.03}), Noise(0.0)});
  const Signal loud = [inner = Noise(0.2)](double time, int channel) {
    return std::fmod(time, 2.0) < 1.0 ? inner(time, channel) : 0.0;
  };
  const auto troubled = Measure(Make(48000, 1, 6.0, Sum({troubles, loud})), Hum{50.1, -30.0});
  ASSERT_TRUE(clean && troubled);
  EXPECT_NEAR(troubled->floor, clean->floor, 1.0);
  for (std::size_t band = 0; band < NoiseProfile::kBandCount; ++band) {
    EXPECT_NEAR(troubled->bands[band], clean->bands[band], 3.0) << band;
  }
}

TEST(NoiseProfile, StaysInTheFiltersRangeAndIsNoneForSilence) {
  EXPECT_FALSE(Measure(Make(48000, 2, 2.0, Sine(0.0))).has_value());
  EXPECT_FALSE(Measure(Make(48000, 1, 0.01, Noise(0.1))).has_value());
  for (const double amplitude : {1e-5, 1.0}) {
    for (const int sampleRate : {8000, 96000}) {
      const auto profile = Measure(Make(sampleRate, 2, 0.3, Noise(amplitude)));
      ASSERT_TRUE(profile.has_value());
      EXPECT_GE(profile->floor, -80.0);
      EXPECT_LE(profile->floor, -20.0);
      for (const double band : profile->bands) {
        EXPECT_LE(std::abs(band), 24.0);
      }
    }
  }
  // Cuts to digital silence are no pauses.
  const Signal cut = [noise = Noise(0.01)](double time, int channel) {
    return std::fmod(time, 1.5) < 0.8 ? noise(time, channel) : 0.0;
  };
  EXPECT_NEAR(Measure(Make(48000, 1, 4.0, cut))->floor,
              Measure(Make(48000, 1, 1.0, Noise(0.01)))->floor, 1.0);
}

}  // namespace
}  // namespace orvelhost::testing
