#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/audio_filter.h"
#include "orvel/core/component_ids.h"
#include "orvel/core/event_loop.h"
#include "orvel/core/localizer.h"
#include "orvel/core/profiler.h"
#include "orvel/core/ref_counted.h"
#include "orvel/core/text.h"
#include "orvel/core/trace.h"
#include "orvel/core/usage_logger.h"

namespace orvel {
namespace {

using teskcore::debug::CodeProfilerManager;

TEST(EventLoop, TasksPostedByATaskWaitForTheNextTurn) {
  QueuedEventLoop& loop = *teskcore::threads::GetDefaultEventLoop();
  std::string order;
  GetRegisteredMainThread()->Post([&] {
    order += "a";
    loop.Post([&] { order += "c"; });
  });
  loop.Post([&] { order += "b"; });
  EXPECT_EQ(order, "");
  EXPECT_EQ(loop.RunTurn(), 2u);
  EXPECT_EQ(order, "ab");
  loop.Drain();
  EXPECT_EQ(order, "abc");
}

TEST(EventLoop, ATaskMayRunTheLoopItself) {
  const boost::intrusive_ptr<QueuedEventLoop> loop(new QueuedEventLoop);
  std::string order;
  loop->Post([&] {
    loop->Drain();
    order += "b";
  });
  loop->Post([&] { order += "a"; });
  loop->Drain();
  EXPECT_EQ(order, "ab");
}

TEST(EventLoop, ATaskThatThrowsLeavesTheOthersWaiting) {
  const boost::intrusive_ptr<QueuedEventLoop> loop(new QueuedEventLoop);
  int ran = 0;
  loop->Post([] { throw std::runtime_error("host"); });
  loop->Post([&] { ++ran; });
  EXPECT_THROW(loop->RunTurn(), std::runtime_error);
  EXPECT_EQ(ran, 0);
  loop->Drain();
  EXPECT_EQ(ran, 1);
}

TEST(EventLoop, TheHostsLoopReplacesTheDefault) {
  const boost::intrusive_ptr<QueuedEventLoop> own(new QueuedEventLoop);
  teskcore::threads::RegisterMainThread(own);
  EXPECT_EQ(GetRegisteredMainThread(), own);
  teskcore::threads::RegisterMainThread(nullptr);
  EXPECT_EQ(GetRegisteredMainThread(), teskcore::threads::GetDefaultEventLoop());
}

TEST(Trace, GoesOutByChannelAndLevel) {
  std::vector<std::string> lines;
  teskcore::debug::SetTraceSink(
      [&](const std::string& channel, int level, const std::string& text) {
        lines.push_back(channel + std::to_string(level) + text);
      });
  const auto trace = [](int level) {
    if (TraceEnabled("app.Presets", level, false)) Trace("!");
  };
  trace(2);
  const auto before = TraceChangeCount();
  teskcore::debug::SetTraceLevel("app.Presets", 2);
  EXPECT_NE(TraceChangeCount(), before);
  trace(2);
  trace(3);
  teskcore::debug::SetTraceLevel("app.Presets", 0);
  trace(1);
  EXPECT_TRUE(TraceEnabled("app.Other", 5, true));
  EXPECT_FALSE(TraceEnabled("app.Presets", 1, true));
  Trace("?");
  std::thread([] { Trace("on no channel"); }).join();
  teskcore::debug::SetTraceSink({});
  EXPECT_EQ(lines, (std::vector<std::string>{"app.Presets2!", "app.Other5?"}));
}

TEST(Profiler, ScopesOpenOnlyAtTheirVolumeAndKeepOneLog) {
  static ProfileName name("SetSectionModelParamAction::RedoSelf");
  std::vector<const teskcore::debug::ProfileDataLog*> scopes;
  auto& manager = CodeProfilerManager::Get();
  manager.SetSink([&](const auto& log, auto duration) {
    EXPECT_GE(duration.count(), 0);
    scopes.push_back(&log);
  });
  { const ProfileScope off(name); }
  manager.SetConditionalProfiling(true, CodeProfilerManager::kDefaultVolume - 1);
  { const ProfileScope tooQuiet(name); }
  manager.SetConditionalProfiling(true);
  for (int i = 0; i < 2; ++i) const ProfileScope on(name);
  manager.SetSink([](const auto&, auto) { throw "not even a std::exception"; });
  EXPECT_NO_THROW({ const ProfileScope failing(name); });
  manager.SetConditionalProfiling(false);
  manager.SetSink({});
  ASSERT_EQ(scopes.size(), 2u);
  EXPECT_EQ(scopes[0], scopes[1]);
  EXPECT_EQ(scopes[0]->name, "SetSectionModelParamAction::RedoSelf");
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
  said.clear();
  namespace effects = teskaudiofilterhost::utility;
  effects::RegisterAudioFilterFactory([&said, text](const std::u16string&) {
    effects::RegisterAudioFilterFactory({});
    said = text;
    return nullptr;
  });
  EXPECT_EQ(effects::CreateAudioFilter(kHardLimiterID), nullptr);
  EXPECT_EQ(said, text);
}

class Filter : public teskaudiofilterhost::AudioFilter {
 public:
  boost::intrusive_ptr<teskaudiofilterhost::PresetList> GetPresetList() const override {
    boost::intrusive_ptr<teskaudiofilterhost::PresetList> list(new teskaudiofilterhost::PresetList);
    list->AddPreset(u"Hall", {0.25f, 1.0f});
    return list;
  }
};

TEST(AudioFilters, ComeFromTheHostsFactoryWithTheirPresets) {
  using teskaudiofilterhost::utility::CreateAudioFilter;
  EXPECT_EQ(CreateAudioFilter(kStudioReverbID), nullptr);
  teskaudiofilterhost::utility::RegisterAudioFilterFactory(
      [](const std::u16string& id) { return id == kStudioReverbID ? new Filter : nullptr; });
  EXPECT_EQ(CreateAudioFilter(u"unknown"), nullptr);
  const auto filter = CreateAudioFilter(kStudioReverbID);
  ASSERT_NE(filter, nullptr);
  std::set<std::u16string> names = {u"old"};
  filter->GetPresetList()->GetPresetNames(names);
  EXPECT_EQ(names, std::set<std::u16string>{u"Hall"});
  std::list<float> params;
  filter->GetPresetList()->GetPreset(u"Hall")->GetParamList(params);
  EXPECT_EQ(params, (std::list<float>{0.25f, 1.0f}));
  EXPECT_EQ(filter->GetPresetList()->GetPreset(u"Room"), nullptr);
  teskaudiofilterhost::utility::RegisterAudioFilterFactory({});
}

TEST(ComponentIds, AreTenDifferentOnes) {
  const std::set<std::u16string> ids = {
      kHardLimiterID,     kStereoExpanderID,   kAdaptiveNoiseReductionID,
      kIzotopeDeHummerID, kIzotopeDeEsserID,   kFFTFilterID,
      kDynamicsID,        kGraphicEQ10BandsID, kIzotopeVocalEnhancerID,
      kStudioReverbID};
  EXPECT_EQ(ids.size(), 10u);
  EXPECT_FALSE(ids.contains(u""));
}

class Counted : public RefCountedObject {
 public:
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  Counted(const Counted& other) : RefCountedObject(other), alive_(other.alive_) { ++alive_; }
  ~Counted() override { --alive_; }

 private:
  int& alive_;
};

TEST(RefCounted, DiesWithItsLastOwnerAndACopyHasOwnersOfItsOwn) {
  int alive = 0;
  boost::intrusive_ptr<Counted> first(new Counted(alive));
  boost::intrusive_ptr<Counted> second = first;
  first = nullptr;
  EXPECT_EQ(alive, 1);
  first = new Counted(*second);
  second = nullptr;
  EXPECT_EQ(alive, 1);
  first = nullptr;
  EXPECT_EQ(alive, 0);
}

}  // namespace
}  // namespace orvel
