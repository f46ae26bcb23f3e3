#include "host/analysis/beats.h"

#include <random>

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

std::optional<Beats> Find(const AudioBlock& audio) {
  MusicListener listener(audio.Format());
  listener.Add(audio);
  return StraightenBeats(listener.Finish());
}

TEST(Beats, LieOnTheClicksOfATrackFromItsBeginToItsEnd) {
  for (const int sampleRate : {44100, 48000}) {
    const auto beats = Find(Make(sampleRate, 2, 14.0, Sum({Clicks(123.0), Noise(0.0005)})));
    ASSERT_TRUE(beats.has_value());
    EXPECT_NEAR(beats->tempo, 123.0, 0.5);
    EXPECT_LT(beats->times.front(), 0.55);
    EXPECT_GT(beats->times.back(), 13.4);
    for (const double time : beats->times) {
      EXPECT_NEAR(std::remainder(time, 60.0 / 123.0), 0.0, 0.03) << time;
    }
  }
}

TEST(Beats, AreStraightenedAndFilledIn) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> jitter(-0.03, 0.03);
  MusicFeatures heard;
  heard.duration = 21.0;
  heard.onsets.resize(1900);
  for (int beat = 3; beat < 40; ++beat) {
    const double time = 0.2 + 0.5 * beat;
    heard.onsets[static_cast<std::size_t>(time * MusicFeatures::kRate / MusicFeatures::kOnsetHop)] =
        1.0f;
    if (beat != 12 && (beat < 26 || beat > 38)) {  // the last one stands alone
      heard.beats.push_back(time + jitter(random));
    }
  }
  const auto beats = StraightenBeats(heard);
  ASSERT_TRUE(beats.has_value());
  ASSERT_EQ(beats->times.size(), 42u);
  for (std::size_t beat = 0; beat < beats->times.size(); ++beat) {
    EXPECT_NEAR(beats->times[beat], 0.2 + 0.5 * static_cast<double>(beat), 0.02);
  }
}

TEST(Beats, AreNotFoundWhereThereAreNone) {
  std::mt19937 random(3);
  std::vector<double> starts;
  for (double time = 0.3; time < 12.0;) {
    starts.push_back(time);
    time += std::uniform_real_distribution<double>(0.12, 0.7)(random);
  }
  const Signal words = [starts](double time, int) {
    double sum = 0.0;
    for (const double start : starts) {
      sum += time > start ? 0.3 * std::exp(-(time - start) * 12.0) *
                                std::sin(2 * std::numbers::pi * 300.0 * time)
                          : 0.0;
    }
    return sum;
  };
  const std::pair<const char*, AudioBlock> cases[] = {
      {"silence", Make(44100, 1, 8.0, Sine(0.0))},
      {"words", Make(44100, 1, 12.0, Sum({words, Noise(0.001)}))},
      {"a tone", Make(44100, 1, 12.0, Sine(0.3))},
      {"10 ms", Make(44100, 1, 0.01, Sine(0.3))},
  };
  for (const auto& [name, audio] : cases) {
    EXPECT_FALSE(Find(audio).has_value()) << name;
  }
}

}  // namespace
}  // namespace orvelhost::testing
