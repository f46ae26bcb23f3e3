#include "host/audio/filter_graph.h"

#include <gtest/gtest.h>

#include "host/audio/audio_error.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

TEST(FilterGraph, WithoutFiltersGivesBackEverySample) {
  for (const int channelCount : {1, 2, 6, 9, 16, 64}) {
    SCOPED_TRACE(channelCount);
    const AudioBlock signal = Make(44100, channelCount, 0.1, Noise(2.0));
    const AudioBlock out = RunFilters(signal, {});
    EXPECT_TRUE(HaveSameSamples(out, signal));
    EXPECT_EQ(out.Format(), signal.Format());
  }
}

TEST(FilterGraph, TheCutIntoBlocksDoesNotChangeTheSamples) {
  const AudioBlock signal = Make(44100, 2, 0.15, Noise(2.0));
  // Filters of three ways: sample by sample, with a memory, and once per frame.
  const std::vector<FilterSpec> filters = {
      {"volume", {{"volume", "0.7"}}},
      {"alimiter", {{"limit", "0.5"}, {"latency", "1"}}},
      {"volume", {{"volume", "1/(1+mod(n,7))"}, {"eval", "frame"}}},
  };
  const AudioBlock expected = RunFilters(signal, filters, signal.FrameCount());
  for (const std::size_t pieceSize : {1U, 7U, 1023U, 1024U, 1025U, 4096U}) {
    SCOPED_TRACE(pieceSize);
    EXPECT_TRUE(HaveSameSamples(RunFilters(signal, filters, pieceSize), expected));
  }
}

TEST(FilterGraph, BranchesWaitForOneAnotherAndDelaysAreTakenOff) {
  const AudioBlock signal = Make(44100, 2, 0.2, Noise(0.5));
  const auto late = [](std::int64_t frames) {
    return FilterSpec{"adelay", {{"delays", std::to_string(frames) + "S"}, {"all", "1"}}, frames};
  };
  const FilterSpec half = {"volume", {{"volume", "0.5"}}};
  const FilterSpec inner = {"", {}, 0, 0, {{half, late(700)}, {late(31), half}}};
  const FilterSpec sum = {"", {}, 0, 0, {{half}, {inner, late(300), half}}};
  EXPECT_EQ(DelayOf({late(5), sum}), 1005);
  EXPECT_LT(DifferenceInDb(RunFilters(signal, {late(5), sum}), signal), -130.0);
}

TEST(FilterGraph, RefusesUnknownFiltersAndOptionsAndBlocksOfAnotherFormat) {
  const AudioFormat stereo{44100, 2, 0};
  EXPECT_THROW(FilterGraph(stereo, {{"nosuchfilter", {}}}), AudioError);
  EXPECT_THROW(FilterGraph(stereo, {{"volume", {{"nosuchoption", "1"}}}}), AudioError);
  EXPECT_THROW(FilterGraph(stereo, {{"alimiter", {{"limit", "7"}}}}), AudioError);
  FilterGraph graph(stereo, {});
  EXPECT_THROW(graph.Push(AudioBlock({48000, 2, 0}, 10)), AudioError);
}

}  // namespace
}  // namespace orvelhost::testing
