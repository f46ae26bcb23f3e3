#include "orvel/definitions/section_registry.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>
#include <unistd.h>

#include "orvel/actions/action_executor.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/audio_filter.h"
#include "orvel/core/event_loop.h"
#include "orvel/core/localizer.h"
#include "orvel/core/profiler.h"
#include "orvel/core/trace.h"
#include "orvel/core/usage_logger.h"
#include "orvel/definitions/effect_order_registry.h"
#include "orvel/definitions/lifecycle.h"
#include "orvel/models/mix_type_clip_model_interface.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "orvel/models/section_model_interface.h"
#include "orvel/models/session_handler_interface.h"

namespace orvel {
namespace {

using SectionModel = boost::intrusive_ptr<SectionModelInterface>;

class FakeSession : public SessionHandlerInterface {
 public:
  explicit FakeSession(const std::shared_ptr<int>& token = nullptr) : token_(token) {}
  boost::signals2::connection RegisterForClipSelectionChanges(
      const SelectionSignal::slot_type&) override {
    return {};
  }
  boost::signals2::connection RegisterForSessionChanges(const SessionSignal::slot_type&) override {
    return {};
  }
  MixTypeClipModels GetSelectedMixTypeClipModels() override { return {}; }
  bool IsSessionEnabled() override { return true; }

 private:
  std::shared_ptr<int> token_;
};

class FakeExecutor : public ActionExecutor {
 public:
  explicit FakeExecutor(const std::shared_ptr<int>& token = nullptr) : token_(token) {}
  bool Execute(const boost::intrusive_ptr<Action>&) override { return true; }
  bool ExecuteWithoutUndo(const boost::intrusive_ptr<Action>&, bool flag) override { return flag; }
  boost::signals2::connection RegisterForActionExecutionScopeChanges(
      const ScopeSignal::slot_type&) override {
    return {};
  }

 private:
  std::shared_ptr<int> token_;
};

// Notes what it is asked to make.
struct Creator {
  void operator()(const std::string& context, const SectionDefinition& definition,
                  const boost::intrusive_ptr<SessionHandlerInterface>&,
                  const MixTypeClipModels& clips, bool flag, SectionModel&) const {
    *log = name + ":" + context + ":" + definition.GetModelID() + ":" +
           std::to_string(clips.size()) + (flag ? ":followed" : "");
  }
  std::string name;
  std::string* log;
};

bool Create(const std::string& modelID) {
  SectionModel model;
  return factory::CreateModelForClips(modelID, "dialog", {}, nullptr, {nullptr, nullptr}, true,
                                      model);
}

TEST(SectionRegistry, TheFirstBuilderOfAModelStays) {
  const auto build = [](const char* key) {
    return [key](const PropList& config) {
      return SectionDefinition("model_test", u"", config, {}, {}, key);
    };
  };
  EXPECT_TRUE(factory::RegisterModelDefinition("model_test", build("first")));
  EXPECT_FALSE(factory::RegisterModelDefinition("model_test", build("second")));
  EXPECT_FALSE(factory::RegisterModelDefinition("model_pan", build("own")));
  PropList config;
  config.SetValue("a", 1.0f);
  SectionDefinition definition;
  EXPECT_TRUE(factory::CreateSectionModelDefinition("model_test", config, definition));
  EXPECT_EQ(definition.GetSectionKey(), "first");
  EXPECT_EQ(definition.GetConfiguration(), config);
  EXPECT_FALSE(factory::CreateSectionModelDefinition("model_none", {}, definition));
  EXPECT_EQ(definition.GetSectionKey(), "first");
}

TEST(SectionRegistry, AModelsOwnCreatorWinsOverTheGenericOne) {
  std::string log;
  EXPECT_FALSE(Create("model_pan"));
  factory::SetGenericFactoryFunction(Creator{"generic", &log});
  EXPECT_TRUE(Create("model_pan"));
  EXPECT_EQ(log, "generic:dialog:model_pan:2:followed");
  EXPECT_TRUE(Create("model_none"));  // an unknown section: an empty definition
  EXPECT_EQ(log, "generic:dialog::2:followed");

  static std::string ownLog;  // outlives the test, as the registration does
  EXPECT_TRUE(factory::RegisterModelClass("model_own", Creator{"own", &ownLog}));
  EXPECT_FALSE(factory::RegisterModelClass("model_own", Creator{"other", &log}));
  EXPECT_TRUE(Create("model_own"));
  EXPECT_EQ(ownLog, "own:dialog::2:followed");

  factory::RegisterModelClass("model_empty", {});
  EXPECT_FALSE(Create("model_empty"));
  factory::SetGenericFactoryFunction({});
  EXPECT_FALSE(Create("model_pan"));
}

TEST(SectionRegistry, ACreatorMayReplaceItselfWhileItRuns) {
  std::string log;
  const auto once = [&log, text = std::string("still here, with a text of its own")](
                        const auto&, const auto&, const auto&, const auto&, bool, auto&) {
    factory::SetGenericFactoryFunction({});
    log = text;
  };
  factory::SetGenericFactoryFunction(once);
  EXPECT_TRUE(Create("model_pan"));
  EXPECT_EQ(log, "still here, with a text of its own");
  EXPECT_FALSE(Create("model_pan"));
}

TEST(SectionRegistry, AnEmptyBuilderIsAnErrorWhenItIsCalled) {
  factory::RegisterModelDefinition("model_hollow", {});
  SectionDefinition definition;
  EXPECT_THROW(factory::CreateSectionModelDefinition("model_hollow", {}, definition),
               boost::bad_function_call);
}

TEST(EffectOrderRegistry, TheLastNumberOfAnEffectCounts) {
  EXPECT_EQ(EffectOrderRegistry::GetEffectOrderNumber(u"fx"), -1);
  EffectOrderRegistry::RegisterEffect(u"fx", 5);
  EffectOrderRegistry::RegisterEffect(u"fx", 7);
  EXPECT_EQ(EffectOrderRegistry::GetEffectOrderNumber(u"fx"), 7);
  EXPECT_EQ(EffectOrderRegistry::GetEffectOrderNumber(u"other"), -1);
}

TEST(Lifecycle, StartsAndStopsAgainAndAgain) {
  const std::vector<AdjustmentsModeDescriptor> modes = {
      {"SFX", u"SFX", type_sfx, "sfx", {{"model_pan"}, {"model_volume"}}},
      {"Again", u"", type_sfx, "sfx", {}},
      {"Ambience", u"", type_ambience, "ambience", {}}};
  Terminate();
  EXPECT_FALSE(ExecuteOrvelAction(nullptr));
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(factory::GetSessionHandler(), nullptr);
    EXPECT_EQ(ModeDescriptorCache::Get(), nullptr);
    const boost::intrusive_ptr<SessionHandlerInterface> session(new FakeSession);
    const boost::intrusive_ptr<ActionExecutor> executor(new FakeExecutor);
    Initialize(session, executor, modes);
    EXPECT_TRUE(IsInitialized());
    EXPECT_EQ(factory::GetSessionHandler(), session);
    EXPECT_EQ(GetOrvelActionExecutor(), executor);
    EXPECT_TRUE(ExecuteOrvelAction(nullptr));
    EXPECT_FALSE(ExecuteOrvelActionWithoutUndo(nullptr, false));
    EXPECT_TRUE(ModeDescriptorCache::Get()->IsValidMode("sfx"));
    Terminate();
    EXPECT_FALSE(IsInitialized());
  }
  SetOrvelActionExecutor(nullptr);

  ModeDescriptorCache::Initialize(modes);
  std::vector<std::string> ids = {"old"};
  EXPECT_TRUE(ModeDescriptorCache::Get()->GetOrderedJSONAdjustmentsModes(ids));
  EXPECT_EQ(ids, (std::vector<std::string>{"sfx", "sfx", "ambience"}));
  EXPECT_EQ(*ModeDescriptorCache::Get()->GetAdjustmentsModes().begin(), "ambience");
  std::vector<SectionDescriptor> sections;
  EXPECT_TRUE(ModeDescriptorCache::Get()->GetSectionDescriptors("sfx", sections));
  EXPECT_FALSE(ModeDescriptorCache::Get()->GetSectionDescriptors("SFX", sections));
  ASSERT_EQ(sections.size(), 2u);
  EXPECT_EQ(sections[1].modelID, "model_volume");
  ModeDescriptorCache::Terminate();
}

TEST(Lifecycle, AStartThatFailsInTheHostLeavesNothingStarted) {
  struct Failing : FakeSession {
    bool GetConfigurationPresets(std::vector<Preset<ConfigPresetData>>&) override {
      throw std::runtime_error("host");
    }
  };
  EXPECT_THROW(Initialize(new Failing, nullptr, {}), std::runtime_error);
  EXPECT_EQ(factory::GetSessionHandler(), nullptr);
  EXPECT_EQ(ModeDescriptorCache::Get(), nullptr);
  EXPECT_EQ(ConfigurationManager::Get(), nullptr);
}

// The program ends well when everything that holds the token still does so at its very end.
std::shared_ptr<int>& Token() {
  static auto& token = *new std::shared_ptr<int>(std::make_shared<int>());
  return token;
}

[[noreturn]] void CheckOwners() {
  constexpr int kHolders = 12;
  _exit(Token().use_count() == 1 + kHolders ? 0 : 1);
}

[[noreturn]] void EndWithEverythingHeld() {
  std::atexit(CheckOwners);  // before anything is held, so that it runs after what would let go
  const auto& token = Token();
  using teskaudiofilterhost::AudioFilter;
  UsageLogger::Get().SetSink([token](const auto&) {});
  Localizer::Get().SetLookup([token](const auto&, auto&) { return false; });
  teskcore::debug::SetTraceSink([token](const auto&...) {});
  teskcore::debug::CodeProfilerManager::Get().SetSink([token](const auto&, auto) {});
  teskaudiofilterhost::utility::RegisterAudioFilterFactory(
      [token](const auto&) { return boost::intrusive_ptr<AudioFilter>(); });
  GetRegisteredMainThread()->Post([token] {});
  teskcore::threads::RegisterMainThread(new QueuedEventLoop);
  GetRegisteredMainThread()->Post([token] {});
  factory::RegisterModelDefinition("model_held",
                                   [token](const auto&) { return SectionDefinition(); });
  factory::RegisterModelClass("model_held", [token](const auto&...) {});
  factory::SetGenericFactoryFunction([token](const auto&...) {});
  Initialize(new FakeSession(token), nullptr, {});
  SetOrvelActionExecutor(new FakeExecutor(token));
  std::exit(0);
}

TEST(Lifecycle, HostsMayCallWhileTheirStaticObjectsDie) {
  EXPECT_EXIT(EndWithEverythingHeld(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace orvel
