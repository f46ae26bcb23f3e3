#include "orvel/presets/presets_cache.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <set>

#include <gmock/gmock.h>

#include "orvel/core/usage_logger.h"
#include "tests/support/preset_store.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;
using ::testing::StartsWith;

class PresetsCacheTest : public PresetStore {
 protected:
  static std::vector<std::string> NamesOf(const UserPresets& presets) {
    std::vector<std::string> names;
    for (const auto& preset : presets) names.push_back(preset.Name);
    return names;
  }

  // Every name in a folder of its own, below "Mine": its presets are few.
  Guid AddConfig(PresetsCache& cache, const std::string& name = "Mine") {
    const auto preset = MakeConfigPreset(name);
    EXPECT_TRUE(cache.CreateConfigPreset(preset));
    return preset.Guid;
  }

  void ExpectDiskHolds(const PresetsCache& cache) {
    EXPECT_EQ(Describe(*Open()), Describe(cache));
    const auto before = Snapshot();
    Open()->Reload();
    EXPECT_EQ(Snapshot(), before) << "reloading is no change";
  }
};

TEST_F(PresetsCacheTest, TheFirstStartMakesTheFactoryFolderWhole) {
  const auto cache = Open();
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(4));
  UserPresets presets;
  cache->GetPresets(presets);
  EXPECT_THAT(presets, SizeIs(35));
  EXPECT_THAT(UsersOf(*cache, kDialogTemplate), SizeIs(16));
  EXPECT_TRUE(fs::exists(Root() / "Default" / "music" / "(Config).orvel"));
  EXPECT_THAT(std::distance(fs::directory_iterator(Root().parent_path()), {}), 1)
      << "nothing is left of the making";
  ExpectDiskHolds(*cache);
  // It is made once: what a person removed from it does not come back.
  EXPECT_TRUE(cache->RemoveConfigPreset(kMusicTemplate));
  EXPECT_THAT(ConfigsOf(*Open()), SizeIs(3));
}

TEST_F(PresetsCacheTest, AFactoryPresetOfAModeThatIsNoFolderNameIsPassedOver) {
  static std::string configs;  // lives as long as the module that it is
  ASSERT_TRUE(WritePresets({MakeConfigPreset("No", ".."), MakeConfigPreset("Yes")}, configs));
  teskcore::filesupport::RegisterModuleResource(&configs, u"OrvelConfigPresets", u"json",
                                                configs.data(), configs.size());
  EXPECT_THAT(ConfigsOf(*Cache(new PresetsCache(&configs, true))), SizeIs(1));
}

TEST_F(PresetsCacheTest, WithoutTheFolderThereIsNothingAndNothingIsSaved) {
  const boost::intrusive_ptr<PresetsCache> cache(new PresetsCache(GetLibraryModule(), false));
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(0));
  EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Mine")));
  EXPECT_FALSE(fs::exists(Root()));
}

TEST_F(PresetsCacheTest, WhatAPersonTypesIsANameOrIsRefused) {
  const auto cache = Open();
  const std::string names[] = {"a/b\\c",
                               "..",
                               ".hidden",
                               "\xF0\x9F\x8E\x99 voice",
                               std::string(300, 'x'),
                               "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
                               "end  ",
                               "CON",
                               "default",
                               "DEFAULT",
                               "(config)",
                               "100%",
                               "A",
                               "a",
                               "line\nfeed",
                               "$$$/app/Presets/Orvel/OwnPresetName=Own"};
  for (const auto& name : names) {
    const auto config = MakeConfigPreset(name);
    ASSERT_TRUE(cache->CreateConfigPreset(config)) << name;
    ASSERT_TRUE(cache->SavePreset(MakeUserPreset(name, config.Guid))) << name;
    EXPECT_EQ(NamesOf(UsersOf(*cache, config.Guid)), std::vector{name});
  }
  for (const std::string name : {"", "Default", "(Config)", "\xFF"}) {
    EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset(name))) << name;
    EXPECT_EQ(cache->SavePreset(MakeUserPreset(name)), name == "Default") << name;
  }
  for (const auto& mode : {std::string(), std::string("."), std::string(".."),
                           std::string("../out"), std::string("a/b"), std::string("a\0b", 3)}) {
    EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Mode", mode))) << mode;
    EXPECT_FALSE(cache->AddTemporaryPreset(MakeConfigPreset("Mode", mode))) << mode;
  }
  EXPECT_TRUE(PresetsCache::IsReservedPresetName("Default"));
  EXPECT_FALSE(PresetsCache::IsReservedPresetName("default"));
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, WhatAFileSystemMayTakeForOneFileStandsInTwo) {
  const auto cache = Open();
  const Guid config = AddConfig(*cache, "my show");
  AddConfig(*cache, "My Show");
  EXPECT_TRUE(cache->CreateConfigPreset(MakeConfigPreset("My Show", "music")));
  EXPECT_TRUE(fs::exists(Root() / "My Show%~2" / "music"));
  auto renamed = MakeConfigPreset("Other", "sfx");
  EXPECT_TRUE(cache->CreateConfigPreset(renamed));
  renamed.Name = "MY SHOW";
  EXPECT_TRUE(cache->SavePreset(renamed));
  for (const char* name : {"voice", "Voice", "Voice", "(config)"}) {
    EXPECT_TRUE(cache->SavePreset(MakeUserPreset(name, config))) << name;
  }
  EXPECT_THAT(NamesOf(UsersOf(*cache, config)), ElementsAre("(config)", "Voice", "voice"));
  ExpectDiskHolds(*cache);
  std::set<std::string> folded;
  for (const auto& [path, text] : Snapshot()) {
    std::string name = path;
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_TRUE(folded.insert(name).second) << path;
  }
  // A change of the case alone needs no second name.
  auto voice = UsersOf(*cache, config).back();
  voice.Name = "VOICE ";
  EXPECT_TRUE(cache->SavePreset(voice));
  voice.Name = "Voice ";
  EXPECT_TRUE(cache->SavePreset(voice));
  EXPECT_TRUE(fs::exists(Root() / "my show" / "dialog" / "Voice%20.orvel"));
}

TEST_F(PresetsCacheTest, TheFilesOfEarlierVersionsKeepTheirNames) {
  const auto first = Open();
  const Guid config = AddConfig(*first, "mine");
  const auto look = MakeUserPreset("my look", config);
  ASSERT_TRUE(first->SavePreset(look));
  const auto folder = Root() / "mine%~4" / "dialog";
  fs::rename(Root() / "mine", Root() / "mine%~4");
  fs::rename(folder / "my look.orvel", folder / "my look%~44.orvel");
  const auto cache = Open();
  EXPECT_EQ(ConfigsOf(*cache).front().Name, "mine");
  EXPECT_TRUE(cache->CreateConfigPreset(MakeConfigPreset("mine", "music")));
  EXPECT_FALSE(fs::exists(Root() / "mine"));
  EXPECT_TRUE(cache->SavePreset(MakeUserPreset("my look", config, 2.0f)));
  EXPECT_THAT(NamesOf(UsersOf(*cache, config)), ElementsAre("my look")) << "it is replaced";
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, SavingReplacesByGuidAndByName) {
  const auto cache = Open();
  const Guid config = AddConfig(*cache);
  auto voice = MakeUserPreset("Voice", config);
  EXPECT_TRUE(cache->SavePreset(voice));
  voice.PresetData.Models["model_volume"][1] = -3.0f;
  voice.Name = "Other";
  EXPECT_TRUE(cache->SavePreset(voice));  // renamed: the old file is gone
  EXPECT_THAT(NamesOf(UsersOf(*cache, config)), ElementsAre("Other"));
  ExpectDiskHolds(*cache);
  const auto another = MakeUserPreset("Other", config, 2.0f);
  EXPECT_TRUE(cache->SavePreset(another));
  Preset<UserPresetData> found;
  EXPECT_FALSE(cache->FindPreset(voice.Guid, found));
  EXPECT_TRUE(cache->FindPreset(another.Guid, found));
  ExpectDiskHolds(*cache);
  EXPECT_FALSE(cache->SavePreset(MakeUserPreset("Lost", Guid::CreateUnique())));
  auto unidentified = MakeUserPreset("Nobody", config);
  unidentified.Guid = Guid();
  EXPECT_FALSE(cache->SavePreset(unidentified));
  EXPECT_TRUE(cache->RemovePreset(another.Guid));
  EXPECT_FALSE(cache->RemovePreset(another.Guid));
  EXPECT_THAT(UsersOf(*cache, config), SizeIs(0));
}

TEST_F(PresetsCacheTest, ANameNeverTakesTheFileOfAPresetWithAnotherName) {
  const auto first = Open();
  const Guid config = AddConfig(*first);
  const auto voice = MakeUserPreset("Voice", config);
  ASSERT_TRUE(first->SavePreset(voice));
  const auto folder = Root() / "Mine" / "dialog";
  fs::rename(folder / "Voice.orvel", folder / "Radio.orvel");  // by hand
  const auto cache = Open();
  ASSERT_TRUE(cache->SavePreset(MakeUserPreset("Radio", config)));
  EXPECT_THAT(NamesOf(UsersOf(*cache, config)), ElementsAre("Radio", "Voice"));
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, TwoPresetsThatShareANameSinceTheyWereReadKeepAFileEach) {
  const auto first = Open();
  const Guid config = AddConfig(*first);
  auto voice = MakeUserPreset("Voice", config);
  ASSERT_TRUE(first->SavePreset(voice));
  const auto folder = Root() / "Mine" / "dialog";
  auto twin = MakeUserPreset("Voice", config);
  std::string text;
  ASSERT_TRUE(WritePreset(twin, text));
  Write(folder / "Voice 2.orvel", text);
  const auto cache = Open();
  twin.PresetData.Models["model_volume"][1] = -7.0f;
  EXPECT_TRUE(cache->SavePreset(twin));
  EXPECT_THAT(UsersOf(*cache, config), SizeIs(2));
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, WhatAPersonDidToTheFolderIsRepairedOnce) {
  const auto first = Open();
  const auto mine = MakeConfigPreset("Mine");
  ASSERT_TRUE(first->CreateConfigPreset(mine));
  const auto voice = MakeUserPreset("Voice", mine.Guid);
  ASSERT_TRUE(first->SavePreset(voice));
  fs::copy(Root() / "Mine" / "dialog" / "Voice.orvel",
           Root() / "Mine" / "dialog" / "Voice 2.orvel");
  fs::copy(Root() / "Mine", Root() / "Mine too", fs::copy_options::recursive);
  fs::copy(Root() / "Mine" / "dialog", Root() / "Mine" / "music");
  fs::rename(Root() / "Default" / "sfx", Root() / "Default" / "foley");
  Write(Root() / "Mine" / "dialog" / "broken.orvel", "{");
  teskcore::debug::SetTraceLevel("app.Presets", 2);  // what is skipped is told above that
  const auto cache = Open();
  EXPECT_THAT(traces_, Each(StartsWith("Fixing preset with duplicate GUID: ")));
  ExpectDiskHolds(*cache);

  // The folder's names are the authority; a factory preset keeps its own name.
  std::vector<std::string> configs;
  for (const auto& config : ConfigsOf(*cache)) {
    configs.push_back(config.Name + ":" + config.PresetData.ModeID);
    const auto users = UsersOf(*cache, config.Guid);
    if (!config.Name.starts_with("Mine")) continue;
    // Of two with one guid the second is the copy, and all belong to their folder.
    EXPECT_THAT(NamesOf(users), ElementsAre("Voice", "Voice copy"));
    EXPECT_EQ(users[0].Guid, voice.Guid);
    EXPECT_NE(users[1].Guid, voice.Guid);
    for (const auto& user : users) {
      EXPECT_EQ(user.PresetData.Config, config.Guid);
      EXPECT_EQ(user.PresetData.ModeID, config.PresetData.ModeID);
    }
  }
  const std::string factory = "$$$/app/Presets/DefaultPresetName=(Default)";
  EXPECT_THAT(configs,
              ElementsAre("Mine:dialog", "Mine:music", "Mine too:dialog", factory + ":ambience",
                          factory + ":dialog", factory + ":foley", factory + ":music"));
  EXPECT_TRUE(WasTraced("Fixing preset with duplicate GUID: " +
                        (Root() / "Mine" / "dialog" / "Voice 2.orvel").string()));
}

TEST_F(PresetsCacheTest, ACopyIsNamedAfterTheNameThatIsShown) {
  const auto first = Open();
  const auto folder = Root() / "Default" / "music";
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (Read(entry).find("Remix to 30") != std::string::npos) {
      fs::copy(entry, folder / "zzz.orvel");
      break;
    }
  }
  const auto users = UsersOf(*Open(), kMusicTemplate);
  ASSERT_THAT(users, SizeIs(6));
  EXPECT_EQ(users.back().Name, "Remix to 30 Seconds copy");
}

TEST_F(PresetsCacheTest, BadFilesStayAsTheyAreAndHideNoOthers) {
  const auto first = Open();
  const Guid config = AddConfig(*first);
  ASSERT_TRUE(first->SavePreset(MakeUserPreset("Voice", config)));
  const auto folder = Root() / "Mine" / "dialog";
  Write(folder / "broken.orvel", "{");
  Write(folder / "number.orvel", R"({"Guid": 7})");
  Write(folder / "null.orvel", R"({"Name": "No guid"})");
  Write(folder / "empty.orvel", "");
  Write(folder / ".orvel", "{}");
  Write(Root() / "Broken" / "dialog" / "(Config).orvel", "[1, 2]");
  Write(Root() / "Empty" / "dialog" / "Voice.orvel", "{}");
  Write(Root() / "a file.orvel", "{}");
  fs::create_directory(folder / "folder.orvel");
  const auto before = Snapshot();
  const auto cache = Open();
  EXPECT_THAT(NamesOf(UsersOf(*cache, config)), ElementsAre("Voice"));
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(5));
  EXPECT_EQ(Snapshot(), before);
  for (const char* name : {"broken", "number", "null", "empty"}) {
    EXPECT_TRUE(WasTraced((folder / name).string() + ".orvel")) << name;
  }
  // Removing takes what is the preset's own, and leaves the rest.
  EXPECT_TRUE(cache->RemoveConfigPreset(config));
  EXPECT_FALSE(fs::exists(folder / "Voice.orvel"));
  EXPECT_TRUE(fs::exists(folder / "broken.orvel"));
  EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Broken"))) << "it is somebody's";
}

TEST_F(PresetsCacheTest, DeletingNeverFollowsALinkOutOfTheFolder) {
  const auto first = Open();
  ASSERT_TRUE(first->CreateConfigPreset(MakeConfigPreset("Behind")));
  ASSERT_TRUE(first->CreateConfigPreset(MakeConfigPreset("Mode")));
  const fs::path outside = folder_.Path() / "outside";
  fs::create_directory(outside);
  fs::rename(Root() / "Behind", outside / "Behind");
  fs::create_directory_symlink(outside / "Behind", Root() / "Behind");
  fs::rename(Root() / "Mode" / "dialog", outside / "dialog");
  fs::create_directory_symlink(outside / "dialog", Root() / "Mode" / "dialog");
  fs::create_directories(Root() / "Other");
  fs::create_directory_symlink(outside / "dialog", Root() / "Other" / "dialog");
  const auto cache = Open();
  const auto configs = ConfigsOf(*cache);
  ASSERT_EQ(configs[0].Name, "Behind");
  EXPECT_FALSE(cache->RemoveConfigPreset(configs[0].Guid));
  auto renamed = configs[1];
  renamed.Name = "Renamed";
  EXPECT_TRUE(cache->SavePreset(renamed));
  EXPECT_EQ(Describe(*Open()), Describe(*cache)) << "another link comes first now";
  EXPECT_TRUE(cache->RemoveConfigPreset(configs[1].Guid));
  EXPECT_FALSE(fs::exists(fs::symlink_status(Root() / "Mode")));
  EXPECT_TRUE(fs::exists(outside / "Behind" / "dialog" / "(Config).orvel"));
  EXPECT_TRUE(fs::exists(outside / "dialog" / "(Config).orvel"));
  EXPECT_EQ(Describe(*Open()), Describe(*cache)) << "another link leads there";
}

TEST_F(PresetsCacheTest, ConfigurationPresetsAreCreatedRenamedAndRemoved) {
  const auto cache = Open();
  std::vector<std::string> events;
  UsageLogger::Get().SetSink([&events](const UsageEvent& event) {
    events.push_back(event.name + std::get<std::string>(event.fields.at("preset_guid")));
  });
  auto mine = MakeConfigPreset("Mine");
  EXPECT_TRUE(cache->SavePreset(mine));  // unknown: it is created
  UsageLogger::Get().SetSink({});
  EXPECT_THAT(events, ElementsAre("orvel_save_master_preset" + mine.Guid.AsUTF8String()));
  EXPECT_EQ(ConfigsOf(*cache).front().Guid, mine.Guid) << "the factory's come last";
  EXPECT_FALSE(cache->CreateConfigPreset(mine));
  EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Mine"))) << "the name is taken";
  EXPECT_TRUE(cache->CreateConfigPreset(MakeConfigPreset("Mine", "music")));
  ASSERT_TRUE(cache->SavePreset(MakeUserPreset("Voice", mine.Guid)));
  mine.Name = "Renamed";
  mine.PresetData.Models["model_pan"] = {};
  EXPECT_TRUE(cache->SavePreset(mine));
  EXPECT_FALSE(fs::exists(Root() / "Mine" / "dialog"));
  EXPECT_TRUE(fs::exists(Root() / "Mine" / "music"));
  EXPECT_THAT(NamesOf(UsersOf(*cache, mine.Guid)), ElementsAre("Voice"));
  ExpectDiskHolds(*cache);
  for (const char* taken : {"Mine too", "Default"}) {
    if (*taken == 'M') AddConfig(*cache, taken);
    mine.Name = taken;
    EXPECT_FALSE(cache->SavePreset(mine)) << taken;
  }
  mine.PresetData.ModeID = "music";
  EXPECT_FALSE(cache->SavePreset(mine)) << "a preset stays in its mode";
  ExpectDiskHolds(*cache);
  EXPECT_TRUE(cache->RemoveConfigPreset(mine.Guid));
  EXPECT_FALSE(cache->RemoveConfigPreset(mine.Guid));
  EXPECT_FALSE(fs::exists(Root() / "Renamed"));
  EXPECT_EQ(cache->GetUserPresetsGroupForGuid(mine.Guid), nullptr);
}

TEST_F(PresetsCacheTest, TemporaryPresetsLiveUntilTheyAreRemoved) {
  const auto cache = Open();
  const auto kept = MakeConfigPreset("Show (from Session)");
  ASSERT_TRUE(cache->CreateConfigPreset(kept));
  auto temporary = MakeConfigPreset("Show (from Session)");
  EXPECT_TRUE(cache->AddTemporaryPreset(temporary));
  EXPECT_TRUE(cache->AddTemporaryPreset(temporary));
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(6));
  Preset<ConfigPresetData> found;
  EXPECT_TRUE(cache->FindPreset(temporary.Guid, found));
  EXPECT_EQ(found.Name, "Show (from Session) 2") << "a taken name gets a number";
  EXPECT_TRUE(cache->AddTemporaryPreset(MakeConfigPreset("Default")));
  EXPECT_FALSE(cache->AddTemporaryPreset(kept));
  EXPECT_TRUE(cache->RemoveTemporaryPreset(kept.Guid)) << "no temporary one, it stays";
  cache->Reload();
  cache->RemoveTemporaryPresets();
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(5));
  EXPECT_EQ(ConfigsOf(*cache).front().Guid, kept.Guid);
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, ATemporaryThatACrashLeftGoesUnlessItHoldsWork) {
  {
    const auto crashed = Open();
    const auto used = MakeConfigPreset("Used");
    ASSERT_TRUE(crashed->AddTemporaryPreset(used));
    ASSERT_TRUE(crashed->SavePreset(MakeUserPreset("Voice", used.Guid)));
    ASSERT_TRUE(crashed->AddTemporaryPreset(MakeConfigPreset("Unused")));
    ASSERT_TRUE(crashed->AddTemporaryPreset(MakeConfigPreset("Elsewhere")));
    // Another program that still runs owns this one.
    const auto mark = Root() / "Elsewhere" / "dialog" / ".temporary";
    const std::string text = Read(mark);
    Write(mark, text.substr(0, text.rfind('\n') + 1) + "1");
  }
  const auto cache = Open();
  EXPECT_FALSE(fs::exists(Root() / "Unused"));
  EXPECT_TRUE(fs::exists(Root() / "Elsewhere" / "dialog" / "(Config).orvel"));
  cache->RemoveTemporaryPresets();
  EXPECT_TRUE(fs::exists(Root() / "Used" / "dialog" / "Voice.orvel"));
  EXPECT_FALSE(fs::exists(Root() / "Used" / "dialog" / ".temporary")) << "an ordinary one now";
}

TEST_F(PresetsCacheTest, AMarkCountsForTheFolderThatItWasMadeFor) {
  {
    const auto crashed = Open();
    ASSERT_TRUE(crashed->AddTemporaryPreset(MakeConfigPreset("Theirs")));
    fs::copy(Root() / "Theirs", Root() / "Ours", fs::copy_options::recursive);
    // A mark that somebody left where a preset of one's own is made.
    fs::create_directories(Root() / "Mine" / "dialog");
    fs::copy(Root() / "Theirs" / "dialog" / ".temporary",
             Root() / "Mine" / "dialog" / ".temporary");
    AddConfig(*crashed);
    ASSERT_TRUE(crashed->AddTemporaryPreset(MakeConfigPreset("Renamed")));
    fs::rename(Root() / "Renamed", Root() / "Kept");
    crashed->Reload();
    crashed->RemoveTemporaryPresets();
    EXPECT_TRUE(fs::exists(Root() / "Kept")) << "a person's own, by its name";
  }
  std::vector<std::string> names;
  for (const auto& config : ConfigsOf(*Open())) names.push_back(config.Name);
  names.resize(3);
  EXPECT_THAT(names, ElementsAre("Kept", "Mine", "Ours"));
}

TEST_F(PresetsCacheTest, ATemporaryThatGoesLeavesWhatWasSavedUnderIt) {
  const auto cache = Open();
  const auto session = MakeConfigPreset("Session");
  ASSERT_TRUE(cache->SavePreset(MakeUserPreset("Voice")));
  ASSERT_TRUE(cache->AddTemporaryPreset(session));
  ASSERT_TRUE(cache->SavePreset(MakeUserPreset("Voice", session.Guid, 2.0f)));
  // Another process saves here, too.
  std::string text;
  ASSERT_TRUE(WritePreset(MakeUserPreset("Theirs", session.Guid), text));
  Write(Root() / "Session" / "dialog" / "Theirs.orvel", text);
  EXPECT_TRUE(cache->RemoveTemporaryPreset(session.Guid));
  EXPECT_FALSE(fs::exists(Root() / "Session"));
  EXPECT_THAT(NamesOf(UsersOf(*cache, kDialogTemplate)),
              ::testing::IsSupersetOf({"Voice", "Voice 2", "Theirs"}));
  // One that is given another name is a person's own.
  auto kept = MakeConfigPreset("Session");
  ASSERT_TRUE(cache->AddTemporaryPreset(kept));
  kept.Name = "Kept";
  EXPECT_TRUE(cache->SavePreset(kept));
  cache->RemoveTemporaryPresets();
  EXPECT_TRUE(fs::exists(Root() / "Kept"));
  // One that cannot be deleted stays as an ordinary one, on the disk, too.
  const auto stuck = MakeConfigPreset("Stuck");
  ASSERT_TRUE(cache->AddTemporaryPreset(stuck));
  fs::rename(Root() / "Stuck", folder_.Path() / "Elsewhere");
  fs::create_directory_symlink(folder_.Path() / "Elsewhere", Root() / "Stuck");
  EXPECT_FALSE(cache->RemoveConfigPreset(stuck.Guid));
  EXPECT_TRUE(cache->IsTemporaryPreset(stuck.Guid));
  EXPECT_FALSE(cache->RemoveTemporaryPreset(stuck.Guid));
  EXPECT_FALSE(fs::exists(Root() / "Stuck" / "dialog" / ".temporary"));
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, WhatCannotBeWrittenChangesNeitherDiskNorMemory) {
  const auto cache = Open();
  auto mine = MakeConfigPreset("Mine");
  ASSERT_TRUE(cache->CreateConfigPreset(mine));
  auto voice = MakeUserPreset("Voice", mine.Guid);
  ASSERT_TRUE(cache->SavePreset(voice));
  fs::rename(Root() / "Mine" / "dialog" / "Voice.orvel",
             Root() / "Mine" / "dialog" / "Radio.orvel");
  cache->Reload();
  const auto before = Snapshot();
  const auto known = Describe(*cache);
  const float unwritable = std::nanf("");  // JSON has no such number
  mine.Name = "Renamed";
  mine.PresetData.Models["model_volume"].SetValue("MaxGain", unwritable);
  EXPECT_FALSE(cache->SavePreset(mine));
  mine.Name = "Mine";
  EXPECT_FALSE(cache->SavePreset(mine));
  EXPECT_FALSE(cache->SavePreset(MakeUserPreset("Radio", mine.Guid, unwritable)));
  voice.Name = "Renamed";
  voice.PresetData.Models["model_volume"][1] = unwritable;
  EXPECT_FALSE(cache->SavePreset(voice));
  EXPECT_FALSE(cache->CreateConfigPreset([&] {
    auto another = mine;
    another.Guid = Guid::CreateUnique();
    another.Name = "Another";
    return another;
  }()));
  // A folder stands where the file belongs.
  fs::create_directories(Root() / "Mine" / "dialog" / "Blocked.orvel" / "in the way");
  voice = MakeUserPreset("Voice", mine.Guid);
  ASSERT_EQ(Describe(*cache), known);
  voice.Guid = UsersOf(*cache, mine.Guid)[0].Guid;
  voice.Name = "Blocked";
  EXPECT_FALSE(cache->SavePreset(voice));
  EXPECT_EQ(Describe(*cache), known);
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(PresetsCacheTest, AFolderIsLoadedOnceAndTheFactorysFirst) {
  {
    const auto first = Open();
    AddConfig(*first);
  }
  fs::create_directory_symlink(Root() / "Mine", Root() / "Another");
  fs::copy(Root() / "Default", Root() / "Copy", fs::copy_options::recursive);
  const auto cache = Open();
  Preset<ConfigPresetData> factory;
  EXPECT_TRUE(cache->GetFactoryConfigPreset("dialog", factory));
  EXPECT_EQ(factory.Guid, kDialogTemplate) << "its copy gets the new guid";
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(9));
  EXPECT_EQ(ConfigsOf(*cache)[4].Name, "Mine") << "and not that of a link to it";
  ExpectDiskHolds(*cache);
  factory.Name = "Mine now";
  EXPECT_FALSE(cache->SavePreset(factory)) << "the factory's keep their name";
  // A file of the other kind is nobody's preset here.
  fs::copy(Root() / "Mine" / "dialog" / "(Config).orvel",
           Root() / "Mine" / "dialog" / "Backup.orvel");
  const auto before = Snapshot();
  EXPECT_EQ(Describe(*Open()), Describe(*cache));
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(PresetsCacheTest, ARepairReachesNoFileBehindALink) {
  const auto first = Open();
  ASSERT_TRUE(first->SavePreset(MakeUserPreset("Voice", AddConfig(*first))));
  AddConfig(*first, "Other");
  fs::remove(Root() / "Other/dialog/(Config).orvel");
  for (const std::string name : {"(Config).orvel", "Voice.orvel"}) {
    fs::create_symlink(Root() / "Mine/dialog" / name, Root() / "Other/dialog" / name);
  }
  const auto read = [this] {
    return Read(Root() / "Mine/dialog/(Config).orvel") + Read(Root() / "Mine/dialog/Voice.orvel");
  };
  const std::string before = read();
  const auto cache = Open();
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(6));
  EXPECT_EQ(read(), before);
  ExpectDiskHolds(*cache);
}

TEST_F(PresetsCacheTest, MigrationCopiesOrMovesWhatCanBeFitted) {
  const auto cache = Open();
  const Guid from = AddConfig(*cache, "From");
  const Guid to = AddConfig(*cache, "To");
  const auto fits = MakeUserPreset("Fits", from);
  ASSERT_TRUE(cache->SavePreset(fits));
  ASSERT_TRUE(cache->SavePreset(MakeUserPreset("Refused", from)));
  EXPECT_TRUE(cache->MigrateUserPresets(from, to, true));
  EXPECT_THAT(NamesOf(UsersOf(*cache, to)), ElementsAre("Fits", "Refused"));
  EXPECT_NE(UsersOf(*cache, to)[0].Guid, fits.Guid);
  cache->SetMigrateUserPresetFunction([&](Preset<UserPresetData>& preset) {
    EXPECT_EQ(cache->GetMigrationSource(), from);
    EXPECT_EQ(preset.PresetData.Config, to);
    preset.PresetData.Models["model_volume"][1] = 9.0f;
    return preset.Name == "Fits";
  });
  EXPECT_TRUE(cache->MigrateUserPresets(from, to, true));
  EXPECT_THAT(NamesOf(UsersOf(*cache, to)), ElementsAre("Fits", "Refused"));
  const Guid third = AddConfig(*cache, "Third");
  cache->SetMigrateUserPresetFunction([](auto& preset) { return preset.Name == "Fits"; });
  EXPECT_TRUE(cache->MigrateUserPresets(from, third, false));
  EXPECT_THAT(NamesOf(UsersOf(*cache, third)), ElementsAre("Fits"));
  EXPECT_EQ(UsersOf(*cache, third)[0].Guid, fits.Guid);
  EXPECT_THAT(UsersOf(*cache, from), SizeIs(2));
  // Of one guid in two folders, the one that is meant goes.
  EXPECT_TRUE(cache->RemovePreset(fits.Guid, third));
  EXPECT_THAT(UsersOf(*cache, from), SizeIs(2));
  EXPECT_TRUE(cache->GetMigrationSource().IsNull());
  const auto known = Describe(*cache);
  EXPECT_TRUE(cache->MigrateUserPresets(from, from, true));
  EXPECT_EQ(Describe(*cache), known);
  EXPECT_FALSE(cache->MigrateUserPresets(Guid::CreateUnique(), to, true));
  EXPECT_FALSE(cache->MigrateUserPresets(from, Guid::CreateUnique(), true));
  ExpectDiskHolds(*cache);
}

}  // namespace
}  // namespace orvel::test
