#include "host/timing/stretch.h"

#include <algorithm>
#include <complex>

#include <gtest/gtest.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

AudioBlock StretchTo(const AudioBlock& audio, std::size_t frameCount) {
  const auto source = Stretch(OpenerOf(audio)(), static_cast<std::int64_t>(audio.FrameCount()),
                              static_cast<std::int64_t>(frameCount));
  return ReadAll(*source);
}

/// How far the tone around `middle` is from `frequency`, in cents, by the turn of its phase from
/// one tenth of a second to the next.
double CentsOff(const AudioBlock& audio, std::size_t middle, double frequency) {
  const int rate = audio.Format().sampleRate;
  const std::size_t span = static_cast<std::size_t>(rate) / 10;
  const auto phase = [&](std::size_t begin) {
    std::complex<double> sum;
    for (std::size_t frame = begin; frame < begin + span; ++frame) {
      const double place = static_cast<double>(frame - begin) / static_cast<double>(span);
      sum += std::polar((1 - std::cos(2 * std::numbers::pi * place)) *
                            static_cast<double>(audio.Channel(0)[frame]),
                        -2 * std::numbers::pi * frequency * static_cast<double>(frame) / rate);
    }
    return sum;
  };
  const double turn = std::arg(phase(middle) * std::conj(phase(middle - span)));
  const double offset = turn / (2 * std::numbers::pi) * rate / static_cast<double>(span);
  return 1200.0 * std::log2((frequency + offset) / frequency);
}

/// The middle one of nine places: where the library sets a partial's phase anew, as it does now and
/// then, its frequency cannot be told.
double UsualCentsOff(const AudioBlock& audio, double frequency) {
  std::vector<double> cents;
  for (std::size_t tenth = 1; tenth <= 9; ++tenth) {
    cents.push_back(CentsOff(audio, audio.FrameCount() * (tenth + 1) / 12, frequency));
  }
  std::ranges::nth_element(cents, cents.begin() + 4);
  return cents[4];
}

TEST(Stretch, KeepsEveryPartialAndGivesExactlyTheLengthAsked) {
  const std::pair<double, int> cases[] = {{0.5, 44100}, {0.9, 48000}, {1.13, 96000}, {2.0, 44100}};
  for (const auto& [ratio, sampleRate] : cases) {
    SCOPED_TRACE(ratio);
    const Signal chord = Sum({Sine(0.2, 220.0), Sine(0.2, 554.37), Sine(0.1, 3000.0)});
    const AudioBlock audio = Make(sampleRate, 1, 3.0, chord);
    const std::size_t wanted = static_cast<std::size_t>(std::lround(3.0 * ratio * sampleRate)) + 7;
    const AudioBlock stretched = StretchTo(audio, wanted);
    EXPECT_EQ(stretched.FrameCount(), wanted);
    EXPECT_EQ(stretched.Format(), audio.Format());
    for (const double partial : {220.0, 554.37, 3000.0}) {
      EXPECT_NEAR(UsualCentsOff(stretched, partial), 0.0, 2.0) << partial;
    }
    EXPECT_NEAR(RmsInDb(stretched), RmsInDb(audio), 1.0);
  }
}

TEST(Stretch, MovesWhatHappensInProportion) {
  const AudioBlock audio =
      Make(48000, 1, 3.0, [](double time, int) { return Clicks(30.0)(time + 1.0, 0); });
  const AudioBlock stretched = StretchTo(audio, 216000);
  const auto samples = stretched.Channel(0);
  const auto loudest =
      std::ranges::max_element(samples, {}, [](float sample) { return std::abs(sample); });
  EXPECT_NEAR(static_cast<double>(loudest - samples.begin()) / 48000.0, 1.5, 0.02);
}

TEST(Stretch, LeavesMonoContentMonoAndSilenceSilent) {
  const AudioBlock twice =
      Make(44100, 2, 1.0, [](double time, int) { return ChordLoop()(time, 0); });
  const AudioBlock stretched = StretchTo(twice, 50000);
  EXPECT_TRUE(std::ranges::equal(stretched.Channel(0), stretched.Channel(1)));
  EXPECT_EQ(Peak(StretchTo(Make(44100, 2, 0.5, Sine(0.0)), 30000)), 0.0);
}

TEST(Stretch, TakesClipsOfAnyLengthAndLeavesTheSamplesWhenNothingChanges) {
  for (const std::size_t frames : {1u, 20u, 441u, 5000u}) {
    const AudioBlock audio = Make(44100, 2, static_cast<double>(frames) / 44100, Sine(0.5));
    EXPECT_EQ(StretchTo(audio, frames * 4).FrameCount(), frames * 4);
    EXPECT_EQ(StretchTo(audio, frames / 2 + 1).FrameCount(), frames / 2 + 1);
    EXPECT_TRUE(HaveSameSamples(StretchTo(audio, frames), audio));
  }
  EXPECT_EQ(StretchTo(Make(44100, 1, 0.1, Sine(0.5)), 0).FrameCount(), 0u);
  // An input that ends before its stated length is filled up.
  const AudioBlock audio = Make(44100, 1, 0.2, Sine(0.5));
  EXPECT_EQ(ReadAll(*Stretch(OpenerOf(audio)(), 20000, 10000)).FrameCount(), 10000u);
}

}  // namespace
}  // namespace orvelhost::testing
