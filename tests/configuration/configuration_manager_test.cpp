#include "orvel/configuration/configuration_manager.h"

#include <gmock/gmock.h>

#include "orvel/actions/action_executor.h"
#include "orvel/actions/set_model_configuration_action.h"
#include "orvel/configuration/user_presets_handler.h"
#include "orvel/core/usage_logger.h"
#include "orvel/definitions/lifecycle.h"
#include "orvel/models/adjustments_modes_json.h"
#include "orvel/models/user_preset_utils.h"
#include "orvel/presets/effect_preset_utils.h"
#include "tests/support/document_session.h"
#include "tests/support/fake_section_model.h"
#include "tests/support/preset_store.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ConfigurationManagerTest : public PresetStore {
 protected:
  ConfigurationManagerTest() { Start(); }
  ~ConfigurationManagerTest() override { Terminate(); }

  void Start() {
    Initialize(session_, nullptr, GetDefaultAdjustmentsModeDescriptors());
    Manager().RegisterConfigurationDataChangedCallback([this] { log_.push_back("config"); });
    Manager().RegisterModelConfigurationDataChangedCallback(
        [this](const std::string& mode, const std::string& model, const PropList& config) {
          log_.push_back(mode + ":" + model + (config.IsEmpty() ? ":empty" : ""));
          EXPECT_EQ(GetModelConfiguration(mode, model), config);
        });
    log_.clear();
  }

  static ConfigurationManager& Manager() { return *ConfigurationManager::Get(); }
  static PresetsCache& Store() { return *Manager().GetPresetsCache(); }
  static ConfigPresetsHandler& Handler(const std::string& mode) {
    return *Manager().GetConfigPresetHandler(mode);
  }
  static PropList Gain(float value) {
    PropList list;
    list.SetValue("MaxGain", value);
    return list;
  }
  static bool SetGain(float value, const std::string& mode = "dialog") {
    return Manager().SetModelConfiguration(mode, "model_volume", Gain(value));
  }
  Preset<ConfigPresetData> Create(const std::string& name, const std::string& mode = "dialog") {
    const auto preset = MakeConfigPreset(name, mode);
    EXPECT_TRUE(Store().CreateConfigPreset(preset));
    return preset;
  }
  // What the document holds for a mode, as text.
  std::string Held(const std::string& mode) const {
    std::string text = "nothing";
    for (const auto& preset : session_->document) {
      if (preset.PresetData.ModeID == mode) WritePreset(preset, text);
    }
    return text;
  }

  boost::intrusive_ptr<DocumentSession> session_{new DocumentSession};
  std::vector<std::string> log_;
};

TEST_F(ConfigurationManagerTest, EachModeStartsOnItsFactoryPresetAndTheDocumentHoldsIt) {
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  EXPECT_THAT(Manager().GetCurrentConfigGuidForAllModes(), SizeIs(4));
  EXPECT_TRUE(Manager().GetCurrentConfigGuidForMode("foley").IsNull());
  EXPECT_EQ(Manager().GetConfigPresetHandler("foley"), nullptr);
  EXPECT_THAT(session_->document, SizeIs(4));
  EXPECT_EQ(session_->stores, 1);
  ConfigPresets presets;
  EXPECT_TRUE(ConfigurationManager::GetConfigurationPresetsOfCurrentDocument(presets));
  EXPECT_THAT(presets, SizeIs(4));
  const auto handler = Manager().GetConfigPresetHandler("dialog");
  EXPECT_THAT(handler->GetPresetList(), SizeIs(1)) << "only the mode's";
  Terminate();
  EXPECT_EQ(ConfigurationManager::Get(), nullptr);
  EXPECT_TRUE(GetModelConfiguration("dialog", "model_volume").IsEmpty());
  EXPECT_FALSE(ConfigurationManager::GetConfigurationPresetsOfCurrentDocument(presets));
  ConfigPresetData data;
  EXPECT_FALSE(handler->RequestCurrentData(data)) << "a handler may outlive its manager";
  EXPECT_TRUE(handler->Select(kDialogTemplate));
}

TEST_F(ConfigurationManagerTest, ChangingASectionSignalsItAndComesCleanByHand) {
  const PropList before = GetModelConfiguration("dialog", "model_volume");
  PropList untouched = Gain(77.0f);
  EXPECT_FALSE(Manager().GetModelConfiguration("dialog", "model_pan", untouched));
  EXPECT_FALSE(Manager().GetModelConfiguration("foley", "model_volume", untouched));
  EXPECT_EQ(untouched, Gain(77.0f));
  EXPECT_FALSE(Manager().SetModelConfiguration("dialog", "model_none", Gain(1.0f)));
  EXPECT_FALSE(SetGain(1.0f, "foley"));
  EXPECT_TRUE(Manager().SetModelConfiguration("dialog", "model_volume", before));
  EXPECT_THAT(log_, IsEmpty());
  EXPECT_TRUE(SetGain(1.0f));
  EXPECT_THAT(log_, ElementsAre("dialog:model_volume"));
  EXPECT_TRUE(Manager().IsCurrentConfigDirtyForMode("dialog"));
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("music"));
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("foley"));
  ConfigPresetData data;
  EXPECT_TRUE(Handler("dialog").RequestCurrentData(data));
  EXPECT_EQ(data.Models["model_volume"], Gain(1.0f)) << "one truth";
  EXPECT_TRUE(Manager().SetModelConfiguration("dialog", "model_volume", before));
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("dialog"));
  EXPECT_TRUE(SetGain(2.0f));
  log_.clear();
  EXPECT_TRUE(Manager().RevertCurrentDirtyConfigForMode("dialog"));
  EXPECT_THAT(log_, ElementsAre("config", "dialog:model_volume"));
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), before);
  EXPECT_FALSE(Manager().RevertCurrentDirtyConfigForMode("foley"));
}

TEST_F(ConfigurationManagerTest, TheActionChangesASectionAndTakesItBack) {
  const PropList before = GetModelConfiguration("dialog", "model_volume");
  boost::intrusive_ptr<Action> action;
  EXPECT_FALSE(Manager().GetSetModelConfigurationAction("dialog", "model_none", {}, action));
  ASSERT_TRUE(
      Manager().GetSetModelConfigurationAction("dialog", "model_volume", Gain(1.0f), action));
  EXPECT_EQ(action->GetActionString(), u"Configure Orvel Template");
  action->Redo();
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(1.0f));
  action->Undo();
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), before);
  Terminate();
  // One that was made while there was no configuration does nothing later either.
  const auto early = CreateSetModelConfigurationAction("dialog", "model_volume", Gain(3.0f), u"");
  action->Redo();
  Start();
  early->Redo();
  early->Undo();
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), before);
}

TEST_F(ConfigurationManagerTest, ASelectionReplacesTheConfigurationAndNamesWhatChanged) {
  auto preset = MakeConfigPreset("Mine");
  preset.PresetData = Handler("dialog").GetWorkingData();
  preset.PresetData.Models["model_volume"] = Gain(1.0f);
  preset.PresetData.Models.erase("model_clarity");
  ASSERT_TRUE(Store().CreateConfigPreset(preset));
  EXPECT_TRUE(Handler("dialog").Select(preset.Guid));
  EXPECT_THAT(log_, ElementsAre("config", "dialog:model_clarity:empty", "dialog:model_volume"));
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), preset.Guid);
  EXPECT_NE(Held("dialog").find("Mine"), std::string::npos);
  // The user presets of a mode are those of its configuration.
  const auto users = CreateUserPresetsHandler("dialog");
  EXPECT_THAT(users->GetPresetList(), IsEmpty());
  ASSERT_TRUE(Store().SavePreset(MakeUserPreset("Voice", preset.Guid)));
  EXPECT_THAT(users->GetPresetList(), SizeIs(1));
  EXPECT_TRUE(Handler("dialog").Remove(preset.Guid));
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  EXPECT_THAT(users->GetPresetList(), SizeIs(16));
}

TEST_F(ConfigurationManagerTest, TheVerifierCanRefuseAndLeavesEverythingAsItWas) {
  const auto preset = Create("Mine");
  std::vector<std::string> asked;
  Manager().SetVerifyConfigurationChangeFunction([&asked](const std::string& mode) {
    asked.push_back(mode);
    return false;
  });
  const std::string held = Held("dialog");
  EXPECT_FALSE(SetGain(1.0f));
  EXPECT_FALSE(Handler("dialog").Select(preset.Guid));
  EXPECT_FALSE(SetGain(1.0f, "foley"));
  EXPECT_THAT(asked, ElementsAre("dialog", "dialog"));
  EXPECT_EQ(Held("dialog"), held);
  EXPECT_THAT(log_, IsEmpty());
  session_->Open({preset});  // a document is not asked about
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), preset.Guid);
}

TEST_F(ConfigurationManagerTest, ADocumentBringsItsTemplatesAlong) {
  int reports = 0;
  Manager().SetReportMissingConfigPresetFunction([&reports] { ++reports; });
  auto foreign = MakeConfigPreset("Their Show", "dialog", 2.0f);
  auto unserved = MakeConfigPreset("Foley", "foley");
  auto edited = Preset<ConfigPresetData>();
  ASSERT_TRUE(Store().FindPreset(kMusicTemplate, edited));
  edited.PresetData.Models["model_volume"] = Gain(3.0f);
  EXPECT_TRUE(SetGain(4.0f, "sfx"));
  const ConfigPresets document = {foreign, unserved, edited};
  session_->Open(document);
  EXPECT_EQ(reports, 1);
  EXPECT_EQ(Handler("dialog").GetDisplayName(), u"Their Show (from Session)");
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), foreign.Guid);
  EXPECT_THAT(Handler("dialog").GetPresetList(), SizeIs(2));
  EXPECT_TRUE(Manager().IsCurrentConfigDirtyForMode("music")) << "the document's edits";
  EXPECT_EQ(GetModelConfiguration("music", "model_volume"), Gain(3.0f));
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("sfx")) << "the edits of the one before";
  // The document holds the same again, under its own names.
  EXPECT_NE(Held("dialog").find("\"Their Show\""), std::string::npos);
  EXPECT_THAT(session_->document, SizeIs(5));

  session_->documentChanged(true, true);  // closing
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(2.0f));
  session_->Open({});
  EXPECT_EQ(reports, 1);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  EXPECT_THAT(Handler("dialog").GetPresetList(), SizeIs(1)) << "no longer listed";
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("music"));
}

TEST_F(ConfigurationManagerTest, ATemplateOfTheDocumentCanBeSavedWithItsPresets) {
  const auto foreign = MakeConfigPreset("Their Show");
  session_->Open({foreign});
  ASSERT_TRUE(Store().SavePreset(MakeUserPreset("Voice", foreign.Guid)));
  ASSERT_TRUE(Handler("dialog").SaveAsNew("Our Show"));
  const Guid ours = Manager().GetCurrentConfigGuidForMode("dialog");
  EXPECT_NE(ours, foreign.Guid);
  EXPECT_THAT(UsersOf(Store(), ours), SizeIs(1));
  Preset<ConfigPresetData> gone;
  EXPECT_FALSE(Store().FindPreset(foreign.Guid, gone));
  EXPECT_NE(Held("dialog").find("Our Show"), std::string::npos);
  // One that cannot be deleted stays as an ordinary one, on the disk, too.
  session_->Open({MakeConfigPreset("Stuck")});
  const auto folder = Root() / "Stuck (from Session)";
  std::filesystem::rename(folder, folder_.Path() / "Elsewhere");
  std::filesystem::create_directory_symlink(folder_.Path() / "Elsewhere", folder);
  ASSERT_TRUE(Handler("dialog").SaveAsNew("Mine"));
  EXPECT_FALSE(std::filesystem::exists(folder / "dialog/.temporary"));
}

TEST_F(ConfigurationManagerTest, AHostThatThrowsAtTheStartLeavesNothingBehind) {
  const auto store = Manager().GetPresetsCache();
  Terminate();
  session_->onRegister = [] { throw std::runtime_error("no documents"); };
  EXPECT_THROW(ConfigurationManager::Initialize(session_, store, {"dialog"}), std::runtime_error);
  ASSERT_TRUE(store->SavePreset(MakeUserPreset("Voice")));
  EXPECT_TRUE(store->MigrateUserPresets(kDialogTemplate, kMusicTemplate, true));
}

TEST_F(ConfigurationManagerTest, ATemplateThatCannotBeFiledStaysWithTheDocument) {
  // Its guid is that of a preset in another mode.
  auto clash = MakeConfigPreset("Clash", "dialog", 2.0f);
  clash.Guid = kMusicTemplate;
  session_->Open({clash});
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(2.0f));
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("music"), kMusicTemplate);
  auto unnamed = MakeConfigPreset(std::string("bad \xFF"), "dialog", 3.0f);
  session_->Open({unnamed});
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(3.0f));
  std::filesystem::remove_all(Root());
  Write(Root(), "no folder");
  const auto lost = MakeConfigPreset("Lost", "dialog", 5.0f);
  session_->Open({lost});
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(5.0f));
  EXPECT_NE(Held("dialog").find(lost.Guid.AsUTF8String()), std::string::npos);
}

TEST_F(ConfigurationManagerTest, ARemovedPresetGivesWayToTheFactorysAndOneThatIsUnseenDoesNot) {
  const auto preset = Create("Mine");
  ASSERT_TRUE(Handler("dialog").Select(preset.Guid));
  EXPECT_TRUE(Store().RemoveConfigPreset(preset.Guid));  // not through the handler
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  const auto unseen = Create("Unseen");
  ASSERT_TRUE(Handler("dialog").Select(unseen.Guid));
  EXPECT_TRUE(SetGain(1.0f));
  const std::string held = Held("dialog");
  const std::filesystem::path away = folder_.Path() / "away";
  std::filesystem::rename(Root() / "Unseen", away);
  Store().Reload();
  EXPECT_EQ(Handler("dialog").GetDisplayName(), u"Unseen *");
  EXPECT_THAT(Handler("dialog").GetPresetList(), SizeIs(1));
  EXPECT_EQ(Held("dialog"), held) << "the document keeps its edits";
  EXPECT_TRUE(Manager().RevertCurrentDirtyConfigForMode("dialog"));
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(6.0f));
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
  EXPECT_FALSE(Manager().IsCurrentConfigDirtyForMode("dialog"));
}

TEST_F(ConfigurationManagerTest, ASlotMayChangeTheConfigurationAgain) {
  auto preset = MakeConfigPreset("Mine");
  preset.PresetData = Handler("dialog").GetWorkingData();
  preset.PresetData.Models["model_volume"] = Gain(1.0f);
  ASSERT_TRUE(Store().CreateConfigPreset(preset));
  PropList last;
  Manager().RegisterModelConfigurationDataChangedCallback(
      [&last](const std::string&, const std::string&, const PropList& list) { last = list; });
  const auto connection = Manager().RegisterConfigurationDataChangedCallback([] { SetGain(9.0f); });
  EXPECT_TRUE(Handler("dialog").Select(preset.Guid));
  EXPECT_EQ(last, Gain(9.0f)) << "the last word is what holds";
  connection.disconnect();
  EXPECT_FALSE(Handler("dialog").Select(kMusicTemplate)) << "of another mode";
}

TEST_F(ConfigurationManagerTest, AListenerThatThrowsKeepsNobodyFromBeingTold) {
  auto preset = MakeConfigPreset("Mine");
  preset.PresetData = Handler("dialog").GetWorkingData();
  preset.PresetData.Models["model_volume"] = Gain(1.0f);
  preset.PresetData.Models.erase("model_clarity");
  ASSERT_TRUE(Store().CreateConfigPreset(preset));
  const auto fail = [](auto&&...) { throw std::runtime_error("listener"); };
  Manager().RegisterConfigurationDataChangedCallback(fail);
  Manager().RegisterModelConfigurationDataChangedCallback(fail);
  Handler("dialog").RegisterForDataChanges(fail);
  Handler("dialog").RegisterForStateChanges(fail);
  Manager().RegisterConfigurationDataChangedCallback([this] { log_.push_back("behind"); });
  Manager().RegisterModelConfigurationDataChangedCallback(
      [this](auto&&...) { log_.push_back("behind"); });
  Handler("dialog").RegisterForDataChanges([this](auto&&) { log_.push_back("data"); });
  Handler("dialog").RegisterForStateChanges([this] { log_.push_back("state"); });
  EXPECT_THROW(Handler("dialog").Select(preset.Guid), std::runtime_error);
  EXPECT_THAT(log_, ElementsAre("config", "behind", "dialog:model_clarity:empty", "behind",
                                "dialog:model_volume", "behind", "data", "state"));
}

TEST_F(ConfigurationManagerTest, AReporterMayOpenAnotherDocumentOrFail) {
  const auto second = MakeConfigPreset("Second", "dialog", 2.0f);
  Manager().SetReportMissingConfigPresetFunction([this, second] {
    Manager().SetReportMissingConfigPresetFunction({});
    session_->Open({second});
  });
  session_->Open({MakeConfigPreset("First", "dialog", 1.0f)});
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(2.0f));
  EXPECT_NE(Held("dialog").find("\"Second\""), std::string::npos);
  EXPECT_THAT(session_->document, SizeIs(4)) << "it is stored, too";
  Manager().SetReportMissingConfigPresetFunction([] { throw std::runtime_error("no window"); });
  EXPECT_THROW(session_->Open({MakeConfigPreset("Third", "dialog", 3.0f)}), std::runtime_error);
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(3.0f));
}

TEST_F(ConfigurationManagerTest, ADocumentThatOpensKeepsItsTemplatesWhateverAListenerThrows) {
  // Each mode's template comes from the document before, or goes with it.
  session_->Open({MakeConfigPreset("Old", "ambience"), MakeConfigPreset("Old too", "dialog")});
  const auto fail = [](auto&&...) { throw std::runtime_error("listener"); };
  const boost::signals2::scoped_connection failing =
      Manager().RegisterModelConfigurationDataChangedCallback(fail);
  UsageLogger::Get().SetSink(fail);
  const ConfigPresets document = {MakeConfigPreset("A", "dialog", 1.0f),
                                  MakeConfigPreset("B", "music", 2.0f)};
  EXPECT_THROW(session_->Open(document), std::runtime_error);
  UsageLogger::Get().SetSink({});
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), document[0].Guid);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("music"), document[1].Guid);
  EXPECT_NE(Held("dialog").find("\"A\""), std::string::npos);
  EXPECT_NE(Held("music").find("\"B\""), std::string::npos);
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
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(6.0f));
}

TEST_F(ConfigurationManagerTest, DirtyPresetsAreOfferedUntilOneSaysNo) {
  EXPECT_TRUE(SetGain(1.0f));
  EXPECT_TRUE(Manager().HandleDirtyConfigPresets()) << "no handler";
  EXPECT_TRUE(SetGain(2.0f, "sfx"));
  std::vector<std::string> offered;
  std::string refused;
  Manager().SetHandleDirtyConfigurationPresetFunction(
      [&](const std::string& mode, const Preset<ConfigPresetData>& preset) {
        offered.push_back(mode);
        EXPECT_FALSE(preset.PresetData.Models.at("model_volume") == PropList());
        return mode != refused;
      });
  EXPECT_TRUE(Manager().HandleDirtyConfigPresets());
  EXPECT_THAT(offered, ElementsAre("dialog", "sfx"));
  refused = "dialog";
  EXPECT_FALSE(Manager().HandleDirtyConfigPresets());
  EXPECT_THAT(offered, SizeIs(3));
  Manager().RevertCurrentDirtyConfigForMode("dialog");
  Manager().RevertCurrentDirtyConfigForMode("sfx");
  EXPECT_TRUE(Manager().HandleDirtyConfigPresets());
  EXPECT_THAT(offered, SizeIs(3)) << "nothing is dirty";
}

TEST_F(ConfigurationManagerTest, TheLibrarysOwnWritesAndSuspendedOnesAreNoChanges) {
  ASSERT_TRUE(SetGain(1.0f));  // the host tells of its own storing of it
  EXPECT_EQ(GetModelConfiguration("dialog", "model_volume"), Gain(1.0f));
  const int stores = session_->stores;
  Manager().SuspendDocumentChangedMonitoring(true);
  session_->Open({MakeConfigPreset("Theirs")});
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  Manager().SuspendDocumentChangedMonitoring(false);
  session_->documentChanged(false, false);
  EXPECT_EQ(Manager().GetCurrentConfigGuidForMode("dialog"), kDialogTemplate);
  EXPECT_EQ(session_->stores, stores);
}

TEST_F(ConfigurationManagerTest, WhatTheHostEditsWhileItStoresIsStoredBehind) {
  session_->onStore = [] { SetGain(2.0f); };
  EXPECT_TRUE(SetGain(1.0f));
  EXPECT_NE(Held("dialog").find("\"value\": 2"), std::string::npos);
  const auto editing = session_->documentChanged.connect(
      [once = true](bool, bool) mutable { return !std::exchange(once, false) || SetGain(4.0f); });
  EXPECT_TRUE(SetGain(3.0f));
  EXPECT_NE(Held("dialog").find("\"value\": 4"), std::string::npos);
  EXPECT_TRUE(SetGain(3.0f));
  EXPECT_NE(Held("dialog").find("\"value\": 3"), std::string::npos);
}

TEST_F(ConfigurationManagerTest, UserPresetsAreFittedToTheConfigurationTheyMoveTo) {
  auto target = MakeConfigPreset("Fewer Rooms");
  ASSERT_TRUE(Store().FindPreset(kDialogTemplate, target));
  target.Guid = Guid::CreateUnique();
  target.Name = "Fewer Rooms";
  PropList rooms;
  target.PresetData.Models["model_soundeffects"].GetValue("ReverbPresets", rooms);
  const std::string first = rooms.begin()->first;
  const std::string second = std::next(rooms.begin())->first;
  presetutils::RemovePresetFromConfiguration(target.PresetData.Models["model_soundeffects"],
                                             "ReverbPresets", first);
  ASSERT_TRUE(Store().CreateConfigPreset(target));
  const auto source = Create("All Rooms");
  auto full = source;
  full.PresetData.Models = target.PresetData.Models;
  full.PresetData.Models["model_soundeffects"].SetValue("ReverbPresets", rooms);
  ASSERT_TRUE(Store().SavePreset(full));
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
  std::vector<boost::intrusive_ptr<SectionModelInterface>> models;
  UserPresetData data;
  data.ModeID = "before";
  EXPECT_EQ(modelutils::GetUserPresetData(models, data), 0);
  EXPECT_EQ(data.ModeID, "before");
  ParamDefinition param;
  param.maxValue = 2.0f;
  param.defaultValue = 1.0f;
  const boost::intrusive_ptr<FakeSectionModel> model(new FakeSectionModel({param}));
  models = {model, model};
  data.Models["model_old"] = {};
  EXPECT_EQ(modelutils::GetUserPresetData(models, data), 0);
  EXPECT_EQ(data.ModeID, "dialog");
  EXPECT_EQ(data.Config, kDialogTemplate);
  EXPECT_EQ(data.Models, (std::map<std::string, std::vector<float>>{{"model_fake", {1.0f}}}));
  model->readStatuses[0] = 9;
  EXPECT_EQ(modelutils::GetUserPresetData(models, data), 5);
  EXPECT_THAT(data.Models, IsEmpty());
}

}  // namespace
}  // namespace orvel::test
