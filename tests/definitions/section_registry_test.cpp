#include "orvel/definitions/section_registry.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>
#include <unistd.h>

#include "orvel/configuration/configuration_manager.h"
#include "orvel/core/audio_filter.h"
#include "orvel/core/localizer.h"
#include "orvel/core/profiler.h"
#include "orvel/core/usage_logger.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "tests/support/document_session.h"

namespace orvel::test {
namespace {

bool Create(const std::string& modelID) {
  boost::intrusive_ptr<SectionModelInterface> model;
  return factory::CreateModelForClips(modelID, "dialog", {}, nullptr, {nullptr, nullptr}, true,
                                      model);
}

TEST(SectionRegistry, TheFirstBuilderOfAModelStays) {
  EXPECT_FALSE(factory::RegisterModelDefinition("model_pan", {}));
  SectionDefinition definition;
  EXPECT_TRUE(factory::CreateSectionModelDefinition("model_pan", {}, definition));
  EXPECT_FALSE(factory::CreateSectionModelDefinition("model_none", {}, definition));
  EXPECT_EQ(definition.GetModelID(), "model_pan");
}

TEST(SectionRegistry, AModelsOwnCreatorWinsOverTheGenericOneAndEachMayReplaceItself) {
  static std::string log;  // outlives the test, as a registration does
  const auto creator = [](const std::string& name) {
    return [name](const auto&...) {
      factory::SetGenericFactoryFunction({});
      log = name;
    };
  };
  const std::string generic = "one whose name is longer than a string's own";
  EXPECT_FALSE(Create("model_pan"));
  factory::SetGenericFactoryFunction(creator(generic));
  EXPECT_TRUE(Create("model_pan"));
  EXPECT_EQ(log, generic);
  EXPECT_TRUE(factory::RegisterModelClass("model_own", creator("own")));
  EXPECT_FALSE(factory::RegisterModelClass("model_own", creator("other")));
  EXPECT_TRUE(Create("model_own"));
  EXPECT_EQ(log, "own");
}

TEST(SectionDefinition, OfTwoControlsTheFirstHasTheSwitchAndTheLastTheParameter) {
  std::vector<ControlDefinition> controls;
  for (const char* key : {"A", "B"}) {
    auto& control = controls.emplace_back(u"effect", 1, key);
    control.AddParameterMapping(5, ParameterMapping(0, 0.0f, 1.0f, 1.0f));
  }
  controls[1].AddParameterModifier(ParameterModifier(5, {}, {}));
  SectionDefinition section("model", u"Name", {}, {}, controls, "Key");
  ControlDefinition* control = nullptr;
  EXPECT_EQ(section.GetParamTypeAndControl(1, &control), kControlEnable);
  EXPECT_EQ(control->GetControlKey(), "A");
  EXPECT_EQ(section.GetParamTypeAndControl(5, &control), kModifierParam);
  EXPECT_EQ(control->GetControlKey(), "B");
  EXPECT_EQ(section.GetParamTypeAndControl(7, nullptr), kUnknownParam);
}

TEST(Lifecycle, StartsAndStopsAgainAndAgainAndNotHalfWhenTheHostFails) {
  Terminate();
  for (int round = 0; round < 2; ++round) {
    const boost::intrusive_ptr<DocumentSession> session(new DocumentSession);
    const boost::intrusive_ptr<ActionExecutor> executor(new FakeExecutor);
    Initialize(session, executor, GetDefaultAdjustmentsModeDescriptors());
    EXPECT_EQ(factory::GetSessionHandler(), session);
    EXPECT_EQ(GetOrvelActionExecutor(), executor);
    EXPECT_TRUE(ModeDescriptorCache::Get()->IsValidMode("sfx"));
    Terminate();
    session->onRead = [] { throw std::runtime_error("host"); };
    EXPECT_THROW(Initialize(session, nullptr, {}), std::runtime_error);
    EXPECT_FALSE(IsInitialized());
    EXPECT_EQ(factory::GetSessionHandler(), nullptr);
    EXPECT_EQ(ModeDescriptorCache::Get(), nullptr);
    EXPECT_EQ(ConfigurationManager::Get(), nullptr);
  }
  SetOrvelActionExecutor(nullptr);
  EXPECT_FALSE(ExecuteOrvelAction(nullptr) || ExecuteOrvelActionWithoutUndo(nullptr, true));
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
