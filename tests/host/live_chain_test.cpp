#include "host/audio/live_chain.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "host/audio/audio_error.h"
#include "host/effects/effect_filters.h"
#include "host/effects/filter_specs.h"
#include "orvel/orvel.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

using Chain = std::vector<FilterSpec>;

const Chain kQuieter = {{"volume", {{"volume", "0.5"}}}};

/// What comes out when the chain is empty at first and becomes each of `changes` in turn, every
/// tenth of a second at 44100 Hz.
AudioBlock RunLive(const AudioBlock& in, const std::vector<Chain>& changes) {
  LiveChain live(in.Format(), {});
  std::vector<AudioBlock> out;
  for (std::size_t count = 0; count * 441 < in.FrameCount(); ++count) {
    if (count % 10 == 0 && count > 0 && count <= 10 * changes.size()) {
      live.Change(changes[count / 10 - 1]);
    }
    const double begin = 0.01 * static_cast<double>(count);
    live.Push(Between(in, begin, begin + 0.01));
    for (AudioBlock block; live.Pull(block);) out.push_back(block);
  }
  live.Finish();
  for (AudioBlock block; live.Pull(block);) out.push_back(block);
  return Join(live.OutputFormat(), out);
}

Chain Effect(const std::u16string& id, std::vector<float> parameters) {
  return EffectFilters(id, parameters, {{44100, 1}});
}

TEST(LiveChain, GoingOverToAChainThatSoundsTheSameIsNotHeard) {
  // As different in delay and build as they come: at its place each sample stays.
  const AudioBlock in = Make(44100, 1, 0.6, Noise(0.5));
  const Chain lateOne = {{"adelay", {{"delays", "5000S"}, {"all", "1"}}, 5000}};
  const AudioBlock out = RunLive(in, {lateOne, {}, lateOne, {}});
  EXPECT_LT(DifferenceInDb(out, in), -120.0);
}

TEST(LiveChain, AChangeIsAFadeWithoutAClick) {
  constexpr double kTone = 441.0;
  const AudioBlock in = Make(44100, 1, 0.6, Sine(0.5, kTone));
  using namespace teskaudiofilters;
  const std::pair<const char*, Chain> chains[] = {
      {"gain", kQuieter},
      {"limiter", Effect(kHardLimiterID, {0.9f, 0.7f})},
      {"reverb",
       Effect(kStudioReverbID, {0, 0.02f, 1, 0.5f, 0, 0.5f, 0.6f, 0.3f, 0.5f, 0.5f, 0.5f})},
  };
  // The largest bend of a sine of that height; a click bends sharply.
  const auto bend = [](const AudioBlock& block) {
    const std::span<const float> samples = block.Channel(0);
    double largest = 0.0;
    for (std::size_t at = 1; at + 1 < samples.size() - 2000; ++at) {
      largest = std::max(largest, std::abs(static_cast<double>(samples[at - 1]) -
                                           2.0 * static_cast<double>(samples[at]) +
                                           static_cast<double>(samples[at + 1])));
    }
    return largest;
  };
  for (const auto& [name, chain] : chains) {
    const double still = std::max(bend(in), bend(RunFilters(in, chain)));
    const AudioBlock out = RunLive(in, {chain, {}, chain});
    EXPECT_LT(bend(out), 1.5 * still) << name;
    EXPECT_NEAR(RmsInDb(Between(out, 0.45, 0.55)),
                RmsInDb(Between(RunFilters(in, chain), 0.45, 0.55)), 0.1)
        << name;
  }
}

TEST(LiveChain, AChangeBeforeTheLastOneIsFadedInDoesNotClickEither) {
  const AudioBlock in = Make(44100, 1, 0.4, Sine(0.5, 100.0));
  LiveChain live(in.Format(), {});
  AudioBlock block;
  float last = 0.0f;
  double largestStep = 0.0;
  for (int piece = 0; piece < 100; ++piece) {
    live.Push(Between(in, piece * 0.004, (piece + 1) * 0.004));
    if (piece > 20 && piece < 60) {
      live.Change(piece % 2 == 0 ? Chain() : Chain{{"volume", {{"volume", "0"}}}});
    }
    while (live.Pull(block)) {
      for (const float sample : block.Channel(0)) {
        largestStep = std::max(largestStep, static_cast<double>(std::abs(sample - last)));
        last = sample;
      }
    }
  }
  EXPECT_LT(largestStep, 0.02);
}

TEST(LiveChain, AFilterThatComesInHasHeardWhatWasBefore) {
  const Chain longest =
      Effect(teskaudiofilters::kStudioReverbID, {1, 1, 1, 0, 0, 1, 0.6f, 0, 0.5f, 0, 1});
  const Chain sharp =
      FirFilter({.points = {{0, -80}, {437, -80}, {441, 0}, {445, -80}}, .length = 96000}, 44100);
  const struct {
    const char* name;
    Chain chain;
    double burst;  // seconds that the tone lasts
    std::size_t tenths;
  } cases[] = {{"the longest tail", longest, 2.0, 195}, {"a long response", sharp, 9.0, 20}};
  for (const auto& one : cases) {
    const double end = 0.1 * static_cast<double>(one.tenths);
    const AudioBlock in = Make(44100, 1, end + 1.0, During(0.0, one.burst, Sine(0.5, 441.0)));
    std::vector<Chain> changes(one.tenths);
    changes.back() = one.chain;
    const AudioBlock changed = RunLive(in, changes);
    const AudioBlock always = RunFilters(in, one.chain);
    EXPECT_NEAR(RmsInDb(Between(changed, end + 0.03, end + 0.1)),
                RmsInDb(Between(always, end + 0.03, end + 0.1)), 0.01)
        << one.name;
  }
}

TEST(LiveChain, ARefusedChangeLeavesTheOldChainRunning) {
  const AudioBlock in = Make(44100, 1, 0.1, Noise(0.5));
  LiveChain live(in.Format(), kQuieter);
  EXPECT_THROW(live.Change({{"nosuchfilter", {}}}), AudioError);
  EXPECT_THROW(live.Change(PanFilters(1.0, 1)), AudioError) << "it would become stereo";
  live.Push(in);
  AudioBlock out;
  ASSERT_TRUE(live.Pull(out));
  EXPECT_EQ(out.Channel(0)[7], 0.5f * in.Channel(0)[7]);
}

}  // namespace
}  // namespace orvelhost::testing
