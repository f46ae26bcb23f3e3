#include "host/analysis/noise_profile.h"

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

std::optional<NoiseProfile> Measure(const AudioBlock& audio, const std::optional<Hum>& hum = {}) {
  return MeasureNoiseProfile(*OpenerOf(audio)(), hum);
}

TEST(NoiseProfile, IsTakenFromThePausesWithoutRumbleAndHum) {
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
  for (std::size_t band = 0; band < clean->bands.size(); ++band) {
    EXPECT_NEAR(troubled->bands[band], clean->bands[band], 3.0) << band;
  }
}

TEST(NoiseProfile, IsNoneWhereNothingIsSteady) {
  EXPECT_FALSE(Measure(Make(48000, 2, 2.0, Sine(0.0))).has_value());
  EXPECT_FALSE(Measure(Make(48000, 1, 0.01, Noise(0.1))).has_value());
  const Signal gated = [noise = Noise(0.1)](double time, int channel) {
    const double place = std::fmod(time, 0.65);
    return place < 0.4 ? noise(time, channel) : 0.0;
  };
  EXPECT_FALSE(Measure(Make(48000, 1, 4.0, gated)).has_value()) << "words are no noise";
  const Signal hasty = [words = Noise(0.1), room = Noise(0.001)](double time, int channel) {
    return std::fmod(time, 0.5) < 0.35 ? words(time, channel) : room(time, channel);
  };
  EXPECT_FALSE(Measure(Make(48000, 1, 4.0, hasty)).has_value()) << "long vowels neither";
}

TEST(NoiseProfile, FadesDitherAndCutsAreNoPauses) {
  const auto plain = Measure(Make(48000, 1, 10.0, Noise(0.01)));
  const auto fade = [noise = Noise(0.01)](double seconds) -> Signal {
    return [=](double time, int channel) {
      return noise(time, channel) * std::min({1.0, time / seconds, (10.0 - time) / seconds});
    };
  };
  const Signal loud = During(3.0, 6.0, Noise(0.3));
  const Signal words[] = {
      fade(1.0), fade(2.0),
      Sum({During(2.0, 10.0, Noise(0.01)), During(0.0, 2.0, Noise(2e-5)), loud}),
      During(0.0, 8.0, Noise(0.01))};
  for (const Signal& signal : words) {
    const auto profile = Measure(Make(48000, 1, 10.0, signal));
    ASSERT_TRUE(profile.has_value());
    EXPECT_NEAR(profile->floor, plain->floor, 3.0);
  }
}

}  // namespace
}  // namespace orvelhost::testing
