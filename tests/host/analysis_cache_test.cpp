#include "host/analysis/analysis_cache.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "host/analysis/progress.h"
#include "host/audio/audio_error.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

TEST(ContentKey, FollowsTheBytesAndNotTheName) {
  const TemporaryFolder folder;
  WriteBytes(folder / "a", "one content");
  WriteBytes(folder / "b", "one content");
  WriteBytes(folder / "c", "two content");
  const std::string key = ContentKey(folder / "a");
  EXPECT_EQ(ContentKey(folder / "b"), key);
  EXPECT_NE(ContentKey(folder / "c"), key);
  EXPECT_THROW(ContentKey(folder / "missing"), AudioError);
  EXPECT_THROW(ContentKey(folder / ""), AudioError);
}

TEST(ContentKey, SeesAFileThatIsWrittenAgainAtOnce) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "a";
  WriteBytes(path, "0");
  const std::string first = ContentKey(path);
  WriteBytes(path, "1");
  EXPECT_NE(ContentKey(path), first);
}

TEST(AnalysisCache, WorksOncePerContentAndWork) {
  AnalysisCache cache;
  int runs = 0;
  const auto compute = [&runs] { return ++runs; };
  EXPECT_EQ(cache.Get("a", "levels", compute), 1);
  EXPECT_EQ(cache.Get("a", "levels", compute), 1);
  EXPECT_EQ(cache.Get("b", "levels", compute), 2);
  EXPECT_EQ(cache.Get("a", "beats", compute), 3);
  EXPECT_THROW(cache.Get("c", "levels", []() -> int { throw Cancelled(); }), Cancelled);
  EXPECT_EQ(cache.Get("c", "levels", compute), 4) << "nothing is kept of what was cancelled";
}

TEST(AnalysisCache, ThreadsThatAskTogetherShareOneRun) {
  AnalysisCache cache;
  std::atomic<int> runs = 0;
  std::vector<std::thread> threads;
  for (int index = 0; index < 8; ++index) {
    threads.emplace_back(
        [&] { EXPECT_EQ(cache.Get("a", "levels", [&runs] { return ++runs; }), 1); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(runs, 1);
}

}  // namespace
}  // namespace orvelhost::testing
