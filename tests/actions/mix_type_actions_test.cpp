#include <stdexcept>

#include <gmock/gmock.h>

#include "orvel/actions/action_types.h"
#include "orvel/actions/set_mix_type_action.h"
#include "orvel/actions/set_model_configuration_action.h"
#include "orvel/actions/set_user_preset_action.h"
#include "orvel/configuration/configuration_manager.h"
#include "orvel/configuration/user_presets_handler.h"
#include "orvel/core/usage_logger.h"
#include "tests/support/fake_session.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MixTypeActions : public FakeSessionTest {
 protected:
  void SetUp() override {
    FakeSessionTest::SetUp();
    factory::CreateOrvelModel(model);
    model->RegisterForSectionModelDataChanges(
        [this](const OrvelModel*, const UserPresetData& data) { heard = data; });
    CreateUserPresetsHandler("music")->GetDefaultPreset(preset);
    UsageLogger::Get().SetSink([this](const UsageEvent& event) {
      std::string line = event.name + "|" + event.category + "|" + event.subcategory;
      for (const auto& [name, value] : event.fields) {
        const auto* text = std::get_if<std::string>(&value);
        line += "|" + (text ? *text : name + (std::get<bool>(value) ? " yes" : " no"));
      }
      usage.push_back(line);
    });
  }
  void TearDown() override {
    UsageLogger::Get().SetSink({});
    model.reset();
    FakeSessionTest::TearDown();
  }
  void Select(const MixTypeClipModels& clips) {
    session->Select(clips);
    Loop().Drain();
  }
  void Execute(const boost::intrusive_ptr<Action>& action) {
    EXPECT_EQ(action->GetActionType(), kActionType_SetMixTypeModelParam);
    stack->Execute(action);
    Loop().Drain();
  }

  boost::intrusive_ptr<FakeClip> a{new FakeClip("a")};
  boost::intrusive_ptr<FakeClip> b{new FakeClip("b", "sfx")};
  boost::intrusive_ptr<OrvelModel> model;
  Preset<UserPresetData> preset;
  UserPresetData heard;
  std::vector<std::string> usage;
};

TEST_F(MixTypeActions, ModeIsWrittenBeforeGuidAndEachChangeIsRecorded) {
  b->type = type_sfx;
  b->preset = Guid("cea63332-1adc-44a9-a6eb-5490f965859b");
  a->mode = "music";
  Select({a, b});
  Execute(CreateSetMixTypeAction(model, "music", preset, u"Music"));
  EXPECT_EQ(a->written, "");  // is in the mode already
  EXPECT_EQ(b->written, "mode guid guid ");
  const std::string guid = preset.Guid.AsUTF8String();
  const std::string set = "orvel_set_user_preset|Orvel|Orvel Preset|music|" + guid;
  const std::string mode = "orvel_set_adjustments_mode|Orvel|Orvel Mix Type|";
  EXPECT_THAT(usage, ElementsAre(set + "|undo no", mode + "music|type_sfx|undo no"));
  usage.clear();
  b->written.clear();
  stack->Undo();
  EXPECT_EQ(b->written, "guid mode guid ");
  EXPECT_THAT(usage, ElementsAre(set + "|undo yes", mode + "sfx|type_sfx|undo yes"));
  EXPECT_EQ(b->preset, Guid("cea63332-1adc-44a9-a6eb-5490f965859b"));
}

TEST_F(MixTypeActions, AreEmptyWithoutAModelOrAModeOrAManager) {
  const auto isEmpty = [](const boost::intrusive_ptr<MultiAction>& compound) {
    return compound->begin() == compound->end();
  };
  EXPECT_TRUE(isEmpty(CreateSetMixTypeAction(nullptr, "music", preset, u"")));
  EXPECT_TRUE(isEmpty(CreateSetMixTypeWithDefaultPresetAction(nullptr, "music", u"")));
  EXPECT_FALSE(isEmpty(CreateSetMixTypeWithDefaultPresetAction(model, "music", u"")));
  EXPECT_TRUE(
      isEmpty(CreateSetMixTypeWithDefaultPresetAction(model, "AdjustmentsModeUnknown", u"")));
  Execute(CreateSetUserPresetAction(nullptr, preset, u""));
  Terminate();
  EXPECT_TRUE(isEmpty(CreateSetMixTypeWithDefaultPresetAction(model, "music", u"")));
  PropList configuration;
  configuration.SetValue("MaxGain", 3.0f);
  const auto action =
      CreateSetModelConfigurationAction("music", "model_volume", configuration, u"");
  action->Redo();
  EXPECT_TRUE(GetModelConfiguration("music", "model_volume").IsEmpty());
}

TEST_F(MixTypeActions, AClipThatFailsLeavesNothingHalfDoneAndNobodySilent) {
  a->mode = "music";
  Select({a, b});
  const boost::signals2::scoped_connection failing = b->changed.connect([this] {
    if (b->mode == "ambience") throw std::runtime_error("clip");
  });
  const auto action = CreateSetMixTypeAction(model, "ambience", preset, u"");
  EXPECT_THROW(action->Redo(), std::runtime_error);
  EXPECT_EQ(a->mode, "music");
  EXPECT_TRUE(a->preset.IsNull());
  b->mode = "music";
  Select({a, b});
  heard = {};
  model->Refresh();
  model->SuspendSignaling();
  model->ResumeSignaling(true);
  EXPECT_EQ(heard.ModeID, "music");  // no suspension is left
}

}  // namespace
}  // namespace orvel::test
