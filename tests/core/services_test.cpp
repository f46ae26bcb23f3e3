#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/audio_filter.h"
#include "orvel/core/event_loop.h"
#include "orvel/core/localizer.h"
#include "orvel/core/profiler.h"
#include "orvel/core/text.h"
#include "orvel/core/trace.h"
#include "orvel/core/usage_logger.h"

namespace orvel {
namespace {

using teskcore::debug::CodeProfilerManager;

TEST(EventLoop, TasksPostedByATaskWaitForTheNextTurnUnlessItRunsTheLoopItself) {
  QueuedEventLoop& loop = *teskcore::threads::GetDefaultEventLoop();
  std::string order;
  GetRegisteredMainThread()->Post([&] {
    order += "a";
    loop.Post([&] { order += "c"; });
  });
  loop.Post([&] { order += "b"; });
  EXPECT_EQ(loop.RunTurn(), 2u);
  EXPECT_EQ(order, "ab");
  loop.Post([&] {
    loop.Drain();
    order += "e";
  });
  loop.Post([&] { order += "d"; });
  loop.Drain();
  EXPECT_EQ(order, "abcde");
}

TEST(EventLoop, TheHostsLoopReplacesTheDefaultAndATaskThatThrowsLeavesTheOthersWaiting) {
  const boost::intrusive_ptr<QueuedEventLoop> loop(new QueuedEventLoop);
  teskcore::threads::RegisterMainThread(loop);
  int ran = 0;
  GetRegisteredMainThread()->Post([] { throw std::runtime_error("host"); });
  GetRegisteredMainThread()->Post([&] { ++ran; });
  teskcore::threads::RegisterMainThread(nullptr);
  EXPECT_EQ(GetRegisteredMainThread(), teskcore::threads::GetDefaultEventLoop());
  EXPECT_THROW(loop->RunTurn(), std::runtime_error);
  EXPECT_EQ(ran, 0);
  loop->Drain();
  EXPECT_EQ(ran, 1);
}

TEST(Trace, GoesOutByChannelAndLevel) {
  using teskcore::debug::SetTraceLevel;
  std::string lines;
  teskcore::debug::SetTraceSink(
      [&](const std::string& channel, int level, const std::string& text) {
        lines += channel + std::to_string(level) + text;
      });
  const auto trace = [](int level) {
    if (TraceEnabled("app.Presets", level, false)) Trace("! ");
  };
  trace(2);
  const auto before = TraceChangeCount();
  SetTraceLevel("app.Presets", 2);
  EXPECT_NE(TraceChangeCount(), before);
  trace(2);
  trace(3);
  SetTraceLevel("app.Presets", 0);
  EXPECT_TRUE(TraceEnabled("app.Other", 5, true));
  EXPECT_FALSE(TraceEnabled("app.Presets", 1, true));
  Trace("?");
  std::thread([] { Trace("on no channel"); }).join();
  teskcore::debug::SetTraceSink({});
  EXPECT_EQ(lines, "app.Presets2! app.Other5?");
}

TEST(Profiler, ScopesOpenOnlyAtTheirVolumeAndKeepOneLog) {
  static ProfileName name("SetSectionModelParamAction::RedoSelf");
  std::vector<const teskcore::debug::ProfileDataLog*> scopes;
  auto& manager = CodeProfilerManager::Get();
  manager.SetSink([&](const auto& log, auto) {
    scopes.push_back(&log);
    throw "not even a std::exception";
  });
  { const ProfileScope off(name); }
  manager.SetConditionalProfiling(true, CodeProfilerManager::kDefaultVolume - 1);
  { const ProfileScope tooQuiet(name); }
  manager.SetConditionalProfiling(true);
  for (int i = 0; i < 2; ++i) const ProfileScope on(name);
  manager.SetConditionalProfiling(false);
  manager.SetSink({});
  ASSERT_EQ(scopes.size(), 2u);
  EXPECT_EQ(scopes[0], scopes[1]);
}

TEST(Seams, AHostsCallbackMayReplaceItselfWhileItRuns) {
  const std::string text = "kept until the call is over, and long enough to live elsewhere";
  std::string said;
  UsageLogger::Get().SetSink([&said, text](const UsageEvent&) {
    UsageLogger::Get().SetSink({});
    said = text;
  });
  UsageLogger::Get().Log({});
  EXPECT_EQ(said, text);
  UsageLogger::Get().Log({});  // nobody listens any more
  Localizer::Get().SetLookup([text](const std::string&, std::u16string& found) {
    Localizer::Get().SetLookup({});
    found.assign(text.begin(), text.end());
    return true;
  });
  EXPECT_EQ(UTF16to8(ZString("$$$/a=b")), text);
  namespace effects = teskaudiofilterhost::utility;
  effects::RegisterAudioFilterFactory([&said, text](const std::u16string& id) {
    effects::RegisterAudioFilterFactory({});
    said = UTF16to8(id) + text;
    return nullptr;
  });
  EXPECT_EQ(effects::CreateAudioFilter(u"a"), nullptr);
  EXPECT_EQ(effects::CreateAudioFilter(u"b"), nullptr);
  EXPECT_EQ(said, "a" + text);
}

}  // namespace
}  // namespace orvel
