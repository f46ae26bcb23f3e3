#include "host/analysis/noise_profile.h"

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

std::optional<NoiseProfile> Measure(const AudioBlock& audio, const std::optional<Hum>& hum = {}) {
  return MeasureNoiseProfile(*OpenerOf(audio)(), hum);
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
  for (const auto& [amplitude, sampleRate] : {std::pair(1e-5, 8000), {1.0, 96000}}) {
    const auto profile = Measure(Make(sampleRate, 2, 0.3, Noise(amplitude)));
    ASSERT_TRUE(profile.has_value());
    EXPECT_NEAR(profile->floor, -50.0, 30.0);
    for (const double band : profile->bands) EXPECT_LE(std::abs(band), 24.0);
  }
  // Cuts to digital silence are no pauses.
  EXPECT_NEAR(Measure(Make(48000, 1, 2.0, During(0.0, 0.8, Noise(0.01))))->floor,
              Measure(Make(48000, 1, 1.0, Noise(0.01)))->floor, 1.0);
}

}  // namespace
}  // namespace orvelhost::testing
