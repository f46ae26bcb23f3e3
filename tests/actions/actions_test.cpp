#include <stdexcept>

#include <gmock/gmock.h>

#include "orvel/actions/action_types.h"
#include "orvel/actions/offset_model_param_action.h"
#include "orvel/actions/set_mix_type_action.h"
#include "orvel/actions/set_model_configuration_action.h"
#include "orvel/actions/set_model_param_action.h"
#include "orvel/actions/set_model_param_map_action.h"
#include "orvel/actions/set_user_preset_action.h"
#include "orvel/actions/suspend_signaling_action.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/configuration/user_presets_handler.h"
#include "orvel/core/profiler.h"
#include "orvel/core/usage_logger.h"
#include "tests/support/fake_session.h"

namespace orvel::test {
namespace {

using teskcore::debug::CodeProfilerManager;
using ::testing::ElementsAre;

// What actions do to clips, and undo, is the session walk's to check; here stands the rest.
class Actions : public FakeSessionTest {
 protected:
  void SetUp() override {
    FakeSessionTest::SetUp();
    factory::CreateOrvelModel(model);
    CreateUserPresetsHandler("music")->GetDefaultPreset(preset);
    UsageLogger::Get().SetSink([this](const UsageEvent& event) {
      std::string line = event.name + "|" + event.category + "|" + event.subcategory;
      for (const auto& [name, value] : event.fields) {
        const auto* text = std::get_if<std::string>(&value);
        line += "|" + (text ? *text : name + (std::get<bool>(value) ? " yes" : " no"));
      }
      log.push_back(line);
    });
  }
  void TearDown() override {
    UsageLogger::Get().SetSink({});
    FakeSessionTest::TearDown();
  }
  static std::vector<boost::intrusive_ptr<Action>> Children(
      const boost::intrusive_ptr<Action>& action) {
    const auto& compound = dynamic_cast<const MultiAction&>(*action);
    return {compound.begin(), compound.end()};
  }

  Preset<UserPresetData> preset;
  std::vector<std::string> log;
};

TEST_F(Actions, AControlOfSeveralClipsIsOneStepInBracketsAndIsMeasured) {
  Select({a, b});
  const auto section = Section("model_volume");
  const auto action = CreateSetModelParamAction(section, 2, 0.5f, u"Change Amount");
  EXPECT_EQ(action->GetActionType(), kActionType_SetSectionModelParam);
  ASSERT_EQ(Children(action).size(), 4u);
  EXPECT_EQ(Children(action)[0]->GetActionType(), u"");  // a bracket
  // Several parameters at once are written without brackets.
  EXPECT_EQ(Children(CreateSetModelParamMapAction(section, {{1, 0.5f}}, u"")).size(), 2u);
  int signals = 0;
  section->RegisterForModelChanges([&signals](int, float) { ++signals; });
  CodeProfilerManager::Get().SetSink([&](const auto& of, auto) { log.push_back(of.name); });
  CodeProfilerManager::Get().SetConditionalProfiling(true);
  EXPECT_TRUE(ExecuteOrvelActionWithoutUndo(action, false));
  EXPECT_EQ(signals, 1);
  action->Undo();
  CodeProfilerManager::Get().SetConditionalProfiling(false);
  CodeProfilerManager::Get().SetSink({});
  EXPECT_EQ(signals, 2);
  ASSERT_EQ(log.size(), 8u);
  EXPECT_EQ(log[1], "SetSectionModelParamAction::RedoSelf");
}

TEST_F(Actions, WhatCannotBeReadIsZeroOnUndoAndIsNotMovedByAnOffset) {
  Select({a});
  const auto section = Section("model_volume");
  dynamic_cast<FakeSectionModel&>(*section).readStatuses[2] = 6;
  float& volume = a->Values("model_volume")[2];
  volume = 0.25f;
  const auto offset = CreateOffsetModelParamAction(section, 2, 0.1f, u"");
  offset->Redo();
  offset->Undo();
  EXPECT_EQ(volume, 0.25f);
  for (const auto& action : {CreateSetModelParamAction(section, 2, 0.5f, u""),
                             CreateSetModelParamMapAction(section, {{2, 0.5f}}, u"")}) {
    action->Redo();
    action->Undo();
    EXPECT_EQ(volume, 0.0f);
  }
}

TEST_F(Actions, ModeIsWrittenBeforeGuidAndEachChangeIsRecorded) {
  b->type = type_sfx;
  b->mode = "sfx";
  a->mode = "music";
  b->preset = kSfxTemplate;
  Select({a, b});
  const auto action = CreateSetMixTypeAction(model, "music", preset, u"Music");
  EXPECT_EQ(action->GetUndoDescription(), u"Undo Music");
  for (const auto& listed : {boost::intrusive_ptr<Action>(action), Children(action)[0],
                             CreateSetUserPresetAction(model, preset, u""),
                             CreateSetModelConfigurationAction("music", "", {}, u"")}) {
    EXPECT_EQ(listed->GetActionType(), kActionType_SetMixTypeModelParam);
  }
  action->Redo();
  EXPECT_EQ(a->written, "");  // is in the mode already
  EXPECT_EQ(b->written, "mode guid guid ");
  const std::string guid = preset.Guid.AsUTF8String();
  const std::string set = "orvel_set_user_preset|Orvel|Orvel Preset|music|" + guid;
  const std::string mode = "orvel_set_adjustments_mode|Orvel|Orvel Mix Type|";
  EXPECT_THAT(std::exchange(log, {}),
              ElementsAre(set + "|undo no", mode + "music|type_sfx|undo no"));
  b->written.clear();
  action->Undo();
  EXPECT_EQ(b->written, "guid mode guid ");
  EXPECT_THAT(log, ElementsAre(set + "|undo yes", mode + "sfx|type_sfx|undo yes"));
  EXPECT_EQ(b->preset, kSfxTemplate);
}

TEST_F(Actions, AreEmptyWithoutAModelOrAModeOrAManager) {
  for (const auto& action :
       {CreateSetModelParamAction(nullptr, 1, 0.5f, u""),
        CreateSetModelParamMapAction(nullptr, {{1, 0.5f}}, u""),
        CreateOffsetModelParamAction(nullptr, 1, 0.5f, u""),
        CreateSuspendSignalingAction(nullptr, true, u""),
        CreateSetUserPresetAction(nullptr, preset, u""),
        boost::intrusive_ptr<Action>(CreateSetMixTypeAction(nullptr, "music", preset, u""))}) {
    action->Redo();
    action->Undo();
  }
  ChangeActionParamValue(nullptr, 0.5f);
  const auto isEmpty = [&](const std::string& mode) {
    return Children(CreateSetMixTypeWithDefaultPresetAction(model, mode, u"")).empty();
  };
  EXPECT_FALSE(isEmpty("music"));
  EXPECT_TRUE(isEmpty("AdjustmentsModeUnknown"));
  Terminate();
  EXPECT_TRUE(isEmpty("music"));
  CreateSetModelConfigurationAction("music", "model_volume", {}, u"")->Redo();
}

TEST_F(Actions, AClipThatFailsLeavesNothingHalfDoneAndNobodySilent) {
  a->mode = "music";
  Select({a, b});
  const boost::signals2::scoped_connection failing = b->changed.connect([this] {
    if (b->mode == "ambience") throw std::runtime_error("clip");
  });
  EXPECT_THROW(CreateSetMixTypeAction(model, "ambience", preset, u"")->Redo(), std::runtime_error);
  EXPECT_EQ(a->mode, "music");
  EXPECT_TRUE(a->preset.IsNull());
  model->RegisterForModelChanges([this](const OrvelModel*) { log.push_back("heard"); });
  a->SetAdjustmentsMode("dialog");
  Loop().Drain();
  EXPECT_THAT(log, ElementsAre("heard"));  // no suspension is left
}

}  // namespace
}  // namespace orvel::test
