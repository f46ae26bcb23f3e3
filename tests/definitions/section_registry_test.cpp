#include "orvel/definitions/section_registry.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>
#include <unistd.h>

#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/audio_filter.h"
#include "orvel/core/localizer.h"
#include "orvel/core/profiler.h"
#include "orvel/core/usage_logger.h"
#include "orvel/definitions/effect_order_registry.h"
#include "orvel/definitions/section_definition.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "tests/support/fake_session.h"

namespace orvel::test {
namespace {

bool Create(const std::string& modelID) {
  boost::intrusive_ptr<SectionModelInterface> model;
  return factory::CreateModelForClips(modelID, "dialog", {}, nullptr, {nullptr, nullptr}, true,
                                      model);
}

TEST(SectionRegistry, TheFirstBuilderOfAModelStaysAndTheLastNumberOfAnEffectCounts) {
  EXPECT_EQ(EffectOrderRegistry::GetEffectOrderNumber(u"fx"), -1);
  EffectOrderRegistry::RegisterEffect(u"fx", 5);
  EffectOrderRegistry::RegisterEffect(u"fx", 7);
  EXPECT_EQ(EffectOrderRegistry::GetEffectOrderNumber(u"fx"), 7);
  const auto build = [](const PropList& config) {
    return SectionDefinition("model_test", u"", config, {}, {}, "first");
  };
  EXPECT_TRUE(factory::RegisterModelDefinition("model_test", build));
  EXPECT_FALSE(factory::RegisterModelDefinition("model_test", {}));
  EXPECT_FALSE(factory::RegisterModelDefinition("model_pan", build));
  SectionDefinition definition;
  EXPECT_TRUE(factory::CreateSectionModelDefinition("model_test", {}, definition));
  EXPECT_FALSE(factory::CreateSectionModelDefinition("model_none", {}, definition));
  EXPECT_EQ(definition.GetSectionKey(), "first");
}

TEST(SectionRegistry, AModelsOwnCreatorWinsOverTheGenericOneAndEachMayReplaceItself) {
  static std::string log;  // outlives the test, as a registration does
  const auto creator = [](const std::string& name) {
    return [name](const std::string& context, const SectionDefinition& definition, const auto&,
                  const MixTypeClipModels& clips, bool flag, auto&) {
      factory::SetGenericFactoryFunction({});
      log = name + ":" + context + ":" + definition.GetModelID() + ":" +
            std::to_string(clips.size()) + (flag ? ":followed" : "");
    };
  };
  for (const std::string modelID : {"model_pan", ""}) {  // an unknown one: an empty definition
    EXPECT_FALSE(Create(modelID));
    factory::SetGenericFactoryFunction(creator("one whose name is longer than a string's own"));
    EXPECT_TRUE(Create(modelID));
    EXPECT_EQ(log,
              "one whose name is longer than a string's own:dialog:" + modelID + ":2:followed");
  }
  EXPECT_TRUE(factory::RegisterModelClass("model_own", creator("own")));
  EXPECT_FALSE(factory::RegisterModelClass("model_own", creator("other")));
  EXPECT_TRUE(Create("model_own"));
  EXPECT_EQ(log, "own:dialog::2:followed");
}

constexpr int kSwitchID = 0;
constexpr int kSharedID = 5;
const std::vector<ParamDefinition> kParams = {
    {kSwitchID, 1, 0, 1, kParamFlag_Switch, "Enabled", "Enables it", "ENABLED"}};

ControlDefinition Mapping(const char* key, int paramID) {
  ControlDefinition control(u"effect", 1, key);
  control.AddParameterMapping(paramID, ParameterMapping(0, 0.0f, 1.0f, 1.0f));
  return control;
}

ControlDefinition Modifying(const char* key, int paramID) {
  ControlDefinition control(u"effect", 2, key);
  control.AddParameterModifier(ParameterModifier(paramID, {}, {}));
  return control;
}

TEST(SectionDefinition, GivesAParameterItsRoleAndControl) {
  const auto a = Mapping("A", kSharedID);
  const auto mapsToo = Mapping("B", kSharedID);
  const auto modifies = Modifying("B", kSharedID);
  auto both = Mapping("C", kSharedID);
  both.AddParameterModifier(ParameterModifier(kSharedID, {}, {}));
  const struct {
    std::vector<ControlDefinition> controls;
    int paramID;
    ParamType type;
    const char* control;
  } cases[] = {
      {{a}, kSwitchID, kSectionEnable, "untouched"},
      {{}, kSharedID, kUnknownParam, "untouched"},
      {{a}, 77, kUnknownParam, "untouched"},
      {{a, mapsToo}, 1, kControlEnable, "A"},  // a switch is found at once, the first that has it
      {{a}, kSharedID, kMappedParam, "A"},
      {{a, mapsToo}, kSharedID, kMappedParam, "B"},  // a later control that claims the id wins
      {{a, modifies}, kSharedID, kModifierParam, "B"},
      {{modifies, a}, kSharedID, kMappedParam, "A"},
      {{both}, kSharedID, kModifierParam, "C"},
  };
  for (const auto& c : cases) {
    SectionDefinition section("model", u"Name", {}, kParams, c.controls, "Key");
    EXPECT_EQ(section.GetParamTypeAndControl(c.paramID, nullptr), c.type);
    EXPECT_EQ(std::as_const(section).GetParamTypeAndControl(c.paramID, nullptr), c.type);
    ControlDefinition untouched(u"", 0, "untouched");
    ControlDefinition* control = &untouched;
    EXPECT_EQ(section.GetParamTypeAndControl(c.paramID, &control), c.type);
    EXPECT_EQ(control->GetControlKey(), c.control);
  }
}

TEST(Lifecycle, StartsAndStopsAgainAndAgainAndNotHalfWhenTheHostFails) {
  struct FailingSession : FakeSession {
    bool GetConfigurationPresets(std::vector<Preset<ConfigPresetData>>&) override {
      throw std::runtime_error("host");
    }
  };
  Terminate();
  for (int round = 0; round < 2; ++round) {
    const boost::intrusive_ptr<SessionHandlerInterface> session(new FakeSession);
    const boost::intrusive_ptr<ActionExecutor> executor(new FakeExecutor);
    Initialize(session, executor, GetDefaultAdjustmentsModeDescriptors());
    EXPECT_TRUE(IsInitialized());
    EXPECT_EQ(factory::GetSessionHandler(), session);
    EXPECT_EQ(GetOrvelActionExecutor(), executor);
    EXPECT_TRUE(ModeDescriptorCache::Get()->IsValidMode("sfx"));
    Terminate();
    EXPECT_THROW(Initialize(new FailingSession, nullptr, {}), std::runtime_error);
    EXPECT_FALSE(IsInitialized());
    EXPECT_EQ(factory::GetSessionHandler(), nullptr);
    EXPECT_EQ(ModeDescriptorCache::Get(), nullptr);
    EXPECT_EQ(ConfigurationManager::Get(), nullptr);
  }
  SetOrvelActionExecutor(nullptr);
  EXPECT_FALSE(ExecuteOrvelAction(nullptr));
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
  boost::intrusive_ptr<FakeSession> session(new FakeSession);
  session->sessionChanged.connect([token](bool) {});
  boost::intrusive_ptr<FakeExecutor> executor(new FakeExecutor);
  executor->scopeChanged.connect([token](bool, bool) {});
  Initialize(session, executor, {});
  session.reset();
  executor.reset();
  std::exit(0);
}

TEST(Lifecycle, HostsMayCallWhileTheirStaticObjectsDie) {
  EXPECT_EXIT(EndWithEverythingHeld(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace orvel::test
