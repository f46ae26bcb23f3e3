#include "orvel/configuration/configuration_manager.h"

#include <cmath>

#include <gmock/gmock.h>

#include "orvel/configuration/user_presets_handler.h"
#include "orvel/core/usage_logger.h"
#include "orvel/models/user_preset_utils.h"
#include "orvel/presets/effect_preset_utils.h"
#include "tests/support/configured_store.h"
#include "tests/support/fake_section_model.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ConfigurationManagerTest : public ConfiguredStore {
 protected:
  ConfigurationManagerTest() {
    Manager().RegisterConfigurationDataChangedCallback([this] { log_.push_back("config"); });
    Manager().RegisterModelConfigurationDataChangedCallback(
        [this](const std::string& mode, const std::string& model, const PropList& config) {
          log_.push_back(mode + ":" + model + (config.IsEmpty() ? ":empty" : ""));
          EXPECT_EQ(GetModelConfiguration(mode, model), config);
        });
  }

  static bool SetGain(float value, const std::string& mode = "dialog") {
    return Manager().SetModelConfiguration(mode, "model_volume", Gain(value));
  }
  // The gain that is configured.
  static float GainOf(const std::string& mode) {
    float gain = 0.0f;
    GetModelConfiguration(mode, "model_volume").GetValue("MaxGain", gain);
    return gain;
  }
  // What the document holds for a mode, as text.
  std::string Held(const std::string& mode) const {
    std::string text = "nothing";
    for (const auto& preset : session_->document) {
      if (preset.PresetData.ModeID == mode) WritePreset(preset, text);
    }
    return text;
  }

  std::vector<std::string> log_;
};

TEST_F(ConfigurationManagerTest, EachModeStartsOnItsFactoryPresetAndTheDocumentHoldsIt) {
  EXPECT_THAT(Manager().GetCurrentConfigGuidForAllModes(), SizeIs(4));
  ConfigPresets presets;
  EXPECT_TRUE(ConfigurationManager::GetConfigurationPresetsOfCurrentDocument(presets));
  const auto handler = Manager().GetConfigPresetHandler("dialog");
  EXPECT_THAT(handler->GetPresetList(), SizeIs(1)) << "only the mode's";
  Terminate();
  EXPECT_TRUE(GetModelConfiguration("dialog", "model_volume").IsEmpty());
  EXPECT_FALSE(ConfigurationManager::GetConfigurationPresetsOfCurrentDocument(presets));
  ConfigPresetData data;
  EXPECT_FALSE(handler->RequestCurrentData(data)) << "a handler may outlive its manager";
  EXPECT_FALSE(handler->SaveAsNew("Mine")) << "and has no store to write in";
}

TEST_F(ConfigurationManagerTest, ChangingASectionSignalsItAndComesCleanByHand) {
  const PropList before = GetModelConfiguration("dialog", "model_volume");
  EXPECT_FALSE(Manager().SetModelConfiguration("dialog", "model_none", Gain(1.0f)));
  EXPECT_FALSE(SetGain(1.0f, "foley"));
  EXPECT_TRUE(Manager().SetModelConfiguration("dialog", "model_volume", before));
  EXPECT_TRUE(SetGain(1.0f));
  EXPECT_THAT(log_, ElementsAre("dialog:model_volume"));
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("foley"));
  ConfigPresetData data;
  EXPECT_TRUE(Handler("dialog").RequestCurrentData(data));
  EXPECT_EQ(data.Models["model_volume"], Gain(1.0f)) << "one truth";
  auto preset = MakeConfigPreset("Mine");
  preset.PresetData = data;
  preset.PresetData.Models["model_volume"] = before;
  preset.PresetData.Models.erase("model_clarity");
  ASSERT_TRUE(Store().CreateConfigPreset(preset));
  log_.clear();
  EXPECT_TRUE(Handler("dialog").Select(preset.Guid));
  EXPECT_THAT(log_, ElementsAre("config", "dialog:model_clarity:empty", "dialog:model_volume"));
  EXPECT_FALSE(Manager().RevertCurrentDirtyConfigForMode("foley"));
}

TEST_F(ConfigurationManagerTest, APresetThatIsUnseenKeepsItsEditsAndARemovedOneGivesWay) {
  const auto unseen = MakeConfigPreset("Unseen");
  ASSERT_TRUE(Store().CreateConfigPreset(unseen));
  ASSERT_TRUE(Handler("dialog").Select(unseen.Guid));
  EXPECT_TRUE(SetGain(1.0f));
  const std::string held = Held("dialog");
  const std::filesystem::path away = folder_.Path() / "away";
  std::filesystem::rename(Root() / "Unseen", away);
  Store().Reload();
  EXPECT_EQ(Handler("dialog").GetDisplayName(), u"Unseen *");
  EXPECT_EQ(Held("dialog"), held);
  EXPECT_TRUE(Manager().RevertCurrentDirtyConfigForMode("dialog"));
  EXPECT_EQ(GainOf("dialog"), 6.0f);
  std::filesystem::rename(away, Root() / "Seen");
  Store().Reload();
  EXPECT_EQ(Handler("dialog").GetDisplayName(), u"Seen");
  std::filesystem::remove_all(Root() / "Seen");
  Store().Reload();
  session_->Open({});
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  EXPECT_TRUE(Store().RemoveConfigPreset(kDialogTemplate));
  EXPECT_TRUE(Manager().GetCurrentConfigGuidForMode("dialog").IsNull());
  EXPECT_FALSE(SetGain(1.0f));
}

TEST_F(ConfigurationManagerTest, ATemporaryThatCannotBeDeletedStaysAsAnOrdinaryOne) {
  for (const std::string name : {"Replaced", "Removed"}) {
    session_->Open({MakeConfigPreset(name)});
    const auto folder = Root() / (name + " (from Session)");
    const auto elsewhere = folder_.Path() / name;
    std::filesystem::rename(folder, elsewhere);
    std::filesystem::create_directory_symlink(elsewhere, folder);
    EXPECT_TRUE(name == "Removed" || Handler("dialog").SaveAsNew("Mine"));
    EXPECT_EQ(std::filesystem::exists(elsewhere / "dialog/.temporary"), name == "Removed");
    session_->Open({});
    EXPECT_FALSE(std::filesystem::exists(elsewhere / "dialog/.temporary"));
  }
}

TEST_F(ConfigurationManagerTest, ATemplateInATemporarysPlaceTakesWhatAnotherProcessSavedThere) {
  session_->Open({MakeConfigPreset("Theirs")});
  const auto place = Root() / "Theirs (from Session)/dialog";
  std::string text;
  ASSERT_TRUE(WritePreset(MakeUserPreset("Voice"), text));
  WriteText(place / "Voice.orvel", text);
  EXPECT_TRUE(Handler("dialog").SaveAsNew("Mine"));
  EXPECT_TRUE(std::filesystem::exists(Root() / "Mine/dialog/Voice.orvel"));
  EXPECT_FALSE(std::filesystem::exists(place));
}

TEST_F(ConfigurationManagerTest, AHostThatThrowsAtTheStartLeavesNothingBehind) {
  struct Refusing : DocumentSession {
    boost::signals2::connection RegisterForDocumentChanges(
        const DocumentSignal::slot_type&) override {
      throw std::runtime_error("no documents");
    }
  };
  const auto store = Manager().GetPresetsCache();
  ConfigurationManager::Terminate();
  EXPECT_THROW(ConfigurationManager::Initialize(new Refusing, store, {"dialog"}),
               std::runtime_error);
  ASSERT_TRUE(store->SavePreset(MakeUserPreset("Voice")));
  EXPECT_TRUE(store->MigrateUserPresets(kDialogTemplate, kMusicTemplate, true));
}

TEST_F(ConfigurationManagerTest, AReporterMayOpenAnotherDocumentOrFail) {
  const auto second = MakeConfigPreset("Second", "dialog", 2.0f);
  Manager().SetReportMissingConfigPresetFunction([this, second] {
    Manager().SetReportMissingConfigPresetFunction({});
    session_->Open({second});
  });
  session_->Open({MakeConfigPreset("First", "dialog", 1.0f)});
  EXPECT_EQ(GainOf("dialog"), 2.0f);
  EXPECT_THAT(session_->document, SizeIs(4)) << "it is stored, too";
  Manager().SetReportMissingConfigPresetFunction([] { throw std::runtime_error("no window"); });
  EXPECT_THROW(session_->Open({MakeConfigPreset("Third", "dialog", 3.0f)}), std::runtime_error);
  EXPECT_EQ(GainOf("dialog"), 3.0f);
  EXPECT_NO_THROW(session_->Open({})) << "nothing is missing";
}

TEST_F(ConfigurationManagerTest, ADocumentThatOpensKeepsItsTemplatesWhateverAListenerThrows) {
  const auto fail = [](auto&&...) { throw std::runtime_error("listener"); };
  const boost::signals2::scoped_connection failing =
      Manager().RegisterModelConfigurationDataChangedCallback(fail);
  // Each mode's template comes from the document before, or goes with it.
  const ConfigPresets old = {MakeConfigPreset("Old", "ambience"), MakeConfigPreset("Old too")};
  EXPECT_THROW(session_->Open(old), std::runtime_error);
  bool isTold = false;
  Manager().RegisterModelConfigurationDataChangedCallback([&](auto&&...) { isTold = true; });
  UsageLogger::Get().SetSink(fail);
  const ConfigPresets document = {MakeConfigPreset("A", "dialog", 1.0f),
                                  MakeConfigPreset("B", "music", 2.0f)};
  EXPECT_THROW(session_->Open(document), std::runtime_error);
  UsageLogger::Get().SetSink({});
  EXPECT_TRUE(isTold) << "behind the one that throws";
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), document[0].Guid);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("music"), document[1].Guid);
  EXPECT_THAT(ConfigsOf(Store()), SizeIs(6)) << "those of the document before are gone";
  // One that cannot be read is given nothing of the one before.
  session_->onRead = fail;
  EXPECT_THROW(session_->Open({}), std::runtime_error);
  EXPECT_THROW(SetGain(5.0f), std::runtime_error);
  EXPECT_THAT(session_->document, IsEmpty());
}

TEST_F(ConfigurationManagerTest, OfTwoDocumentsTheOneOpenedInsideTheOtherHolds) {
  const ConfigPresets second = {MakeConfigPreset("Second", "music", 2.0f)};
  const auto opening = Manager().RegisterModelConfigurationDataChangedCallback(
      [&, once = true](const std::string&, const std::string&, const PropList&) mutable {
        if (std::exchange(once, false)) session_->Open(second);
      });
  session_->Open({MakeConfigPreset("First"), MakeConfigPreset("First", "music", 1.0f)});
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("music"), second[0].Guid);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  Manager().RegisterConfigurationDataChangedCallback(
      [this] { session_->documentChanged(true, false); });
  const ConfigPresets told = {MakeConfigPreset("Told"), MakeConfigPreset("Told", "music")};
  session_->Open(told);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("music"), told[1].Guid) << "it is the same one";
  session_->onRead = [] { SetGain(7.0f); };
  session_->Open({MakeConfigPreset("Third", "music")});
  EXPECT_NE(Held("music").find("\"Third\""), std::string::npos) << "nothing is stored before";
}

TEST_F(ConfigurationManagerTest, WhatADocumentHoldsBesidesIsKept) {
  const auto foley = MakeConfigPreset("Foley", "foley");
  session_->Open({foley});
  EXPECT_TRUE(SetGain(1.0f));
  EXPECT_NE(Held("foley"), "nothing") << "of a mode that is not served here";
  // A host that cannot read its document is given nothing to put in the place of what is there.
  session_->isReadable = false;
  session_->Open({foley});
  const int stores = session_->stores;
  EXPECT_TRUE(SetGain(2.0f));
  EXPECT_EQ(session_->stores, stores);
  session_->isReadable = true;
  ConfigurationManager::Initialize(session_, nullptr, {"dialog", "foley"});
  EXPECT_NE(Held("foley"), "nothing") << "there is no cache";
  Terminate();
  Start();
  // A template that stayed from another session keeps its name in the document.
  auto theirs = MakeConfigPreset("Their Show (from Session)");
  ASSERT_TRUE(Store().CreateConfigPreset(theirs));
  theirs.Name = "Their Show";
  session_->Open({theirs});
  EXPECT_NE(Held("dialog").find("\"Their Show\""), std::string::npos);
  // Edits while no document is open do not keep the next one from being read.
  session_->documentChanged(true, true);
  EXPECT_TRUE(SetGain(5.0f));
  session_->documentChanged(true, false);
  EXPECT_EQ(GainOf("dialog"), 6.0f);
  // A template that cannot be filed stays with the document: its guid is that of another mode's.
  auto clash = MakeConfigPreset("Clash", "dialog", 2.0f, kMusicTemplate);
  session_->Open({clash});
  EXPECT_EQ(GainOf("dialog"), 2.0f);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("music"), kMusicTemplate);
}

TEST_F(ConfigurationManagerTest, TheLibrarysOwnWritesAndSuspendedOnesAreNoChanges) {
  session_->onStore = [] { SetGain(2.0f); };
  ASSERT_TRUE(SetGain(1.0f));  // the host tells of its own storing of it
  EXPECT_NE(Held("dialog").find("\"value\": 2"), std::string::npos) << "stored behind";
  Manager().SuspendDocumentChangedMonitoring(true);
  session_->Open({MakeConfigPreset("Theirs")});
  Manager().SuspendDocumentChangedMonitoring(false);
  session_->documentChanged(false, false);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
}

TEST_F(ConfigurationManagerTest, ADocumentThatComesBackWithoutAnEditTakesItAway) {
  session_->isWritable = false;
  ASSERT_TRUE(SetGain(7.0f));
  session_->isWritable = true;
  session_->Open(session_->document);
  EXPECT_NE(GainOf("dialog"), 7.0f);
  session_->Open({MakeConfigPreset("NaN", "foley", std::nanf(""))});
  EXPECT_THAT(session_->document, SizeIs(5)) << "it equals nothing, and is stored once";
}

TEST_F(ConfigurationManagerTest, UserPresetsAreFittedToTheConfigurationTheyMoveTo) {
  PropList rooms;
  auto& models = Handler("dialog").GetWorkingData().Models;
  models.at("model_soundeffects").GetValue("ReverbPresets", rooms);
  auto source = MakeConfigPreset("All Rooms");
  source.PresetData.Models["model_soundeffects"].SetValue("ReverbPresets", rooms);
  auto target = MakeConfigPreset("Fewer Rooms");
  target.PresetData.Models = source.PresetData.Models;
  presetutils::RemovePresetFromConfiguration(target.PresetData.Models["model_soundeffects"],
                                             "ReverbPresets", rooms.begin()->first);
  ASSERT_TRUE(Store().CreateConfigPreset(source) && Store().CreateConfigPreset(target));
  for (const float room : {0.0f, 1.0f}) {
    auto preset = MakeUserPreset(room == 0.0f ? "Gone" : "Kept", source.Guid);
    preset.PresetData.Models = {{"model_soundeffects", {1.0f, 1.0f, 5.0f, room}}};
    ASSERT_TRUE(Store().SavePreset(preset));
  }
  EXPECT_TRUE(Store().MigrateUserPresets(source.Guid, target.Guid, false));
  const auto moved = UsersOf(Store(), target.Guid);
  ASSERT_THAT(moved, SizeIs(1));
  EXPECT_EQ(moved[0].PresetData.Models.at("model_soundeffects")[3], 0.0f);
}

TEST_F(ConfigurationManagerTest, SectionModelsAreDescribedAsAUserPreset) {
  const ParamDefinition param{0, 1.0f, 0.0f, 2.0f, kParamFlag_None, "", "", ""};
  const boost::intrusive_ptr<FakeSectionModel> model(new FakeSectionModel({param}));
  UserPresetData data;
  data.Models["model_old"] = {};
  EXPECT_EQ(modelutils::GetUserPresetData({model, model}, data), 0);
  EXPECT_EQ(data.ModeID, "dialog");
  EXPECT_EQ(data.Config, kDialogTemplate);
  EXPECT_EQ(data.Models, (std::map<std::string, std::vector<float>>{{"model_fake", {1.0f}}}));
  model->readStatuses[0] = 9;
  Terminate();
  EXPECT_EQ(modelutils::GetUserPresetData({model}, data), 5);
  EXPECT_THAT(data.Models, IsEmpty());
}

}  // namespace
}  // namespace orvel::test
