#include "orvel/presets/presets_cache.h"

#include <cctype>
#include <cmath>
#include <set>

#include <gmock/gmock.h>

#include "tests/support/preset_store.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsSupersetOf;
using ::testing::SizeIs;
using ::testing::StartsWith;

class PresetsCacheTest : public PresetStore {
 protected:
  static std::vector<std::string> UserNames(const PresetsCache& cache, const Guid& config) {
    std::vector<std::string> names;
    for (const auto& preset : UsersOf(cache, config)) names.push_back(preset.Name);
    return names;
  }

  // Every name in a folder of its own, below "Mine": its presets are few.
  static Guid AddConfig(PresetsCache& cache, const std::string& name = "Mine") {
    const auto preset = MakeConfigPreset(name);
    EXPECT_TRUE(cache.CreateConfigPreset(preset));
    return preset.Guid;
  }

  void ExpectDiskHolds(const PresetsCache& cache) {
    EXPECT_EQ(Describe(*Open()), Describe(cache));
    const auto before = Snapshot(Root());
    Open()->Reload();
    EXPECT_EQ(Snapshot(Root()), before) << "reloading is no change";
  }

  // The files of the template "Mine".
  fs::path Mine(const std::string& file) const { return Root() / "Mine/dialog" / file; }

  const Cache cache_ = Open();
};

TEST_F(PresetsCacheTest, AFactoryPresetOfAModeThatIsNoFolderNameIsPassedOver) {
  static std::string configs;  // lives as long as the module that it is
  fs::remove_all(Root());
  ASSERT_TRUE(WritePresets({MakeConfigPreset("No", ".."), MakeConfigPreset("Yes")}, configs));
  teskcore::filesupport::RegisterModuleResource(&configs, u"OrvelConfigPresets", u"json",
                                                configs.data(), configs.size());
  EXPECT_THAT(ConfigsOf(*Cache(new PresetsCache(&configs, true))), SizeIs(1));
}

TEST_F(PresetsCacheTest, WhatAPersonTypesIsANameOrIsRefused) {
  const std::string tooLong(300, 'x');
  for (const std::string name :
       {"a/b\\c", "..", ".hidden", "\U0001F399 voice", "\u05E9\u05DC\u05D5\u05DD", "end  ", "CON",
        "default", "DEFAULT", "(config)", "100%", "A", "a", "Voice", "line\nfeed",
        "$$$/x/Default=Own", tooLong.c_str()}) {
    const auto config = MakeConfigPreset(name);
    ASSERT_TRUE(cache_->CreateConfigPreset(config)) << name;
    ASSERT_TRUE(cache_->SavePreset(MakeUserPreset(name, config.Guid))) << name;
    EXPECT_THAT(UserNames(*cache_, config.Guid), ElementsAre(name));
  }
  for (const std::string name : {"", "Default", "(Config)", "\xFF"}) {
    EXPECT_FALSE(cache_->CreateConfigPreset(MakeConfigPreset(name))) << name;
    EXPECT_EQ(cache_->SavePreset(MakeUserPreset(name)), name == "Default") << name;
  }
  for (const std::string mode :
       {"", ".", "..", "../out", "a/b", "a\\b", "\xFF", tooLong.c_str() + 99}) {
    EXPECT_FALSE(cache_->CreateConfigPreset(MakeConfigPreset("Mode", mode))) << mode;
    EXPECT_FALSE(cache_->AddTemporaryPreset(MakeConfigPreset("Mode", mode))) << mode;
  }
  ExpectDiskHolds(*cache_);
}

TEST_F(PresetsCacheTest, WhatAFileSystemMayTakeForOneFileStandsInTwo) {
  const Guid config = AddConfig(*cache_, "my show");
  AddConfig(*cache_, "My Show");
  EXPECT_TRUE(cache_->CreateConfigPreset(MakeConfigPreset("My Show", "music")));
  auto renamed = MakeConfigPreset("Other", "sfx");
  EXPECT_TRUE(cache_->CreateConfigPreset(renamed));
  renamed.Name = "MY SHOW";
  EXPECT_TRUE(cache_->SavePreset(renamed));
  for (const char* name : {"voice", "Voice", "Voice", "(config)"}) {
    EXPECT_TRUE(cache_->SavePreset(MakeUserPreset(name, config))) << name;
  }
  EXPECT_THAT(UserNames(*cache_, config), ElementsAre("(config)", "Voice", "voice"));
  ExpectDiskHolds(*cache_);
  std::set<std::string> folded;
  for (const auto& [path, text] : Snapshot(Root())) {
    std::string name = path;
    for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_TRUE(folded.insert(name).second) << name;
  }
  // A change of the case alone needs no second name.
  auto voice = UsersOf(*cache_, config).back();
  for (const char* name : {"VOICE ", "Voice "}) {
    voice.Name = name;
    EXPECT_TRUE(cache_->SavePreset(voice));
  }
  EXPECT_TRUE(fs::exists(Root() / "my show/dialog/Voice%20.orvel"));
}

TEST_F(PresetsCacheTest, ANameTakesNoFileOfAnotherPreset) {
  const Guid config = AddConfig(*cache_);
  const auto another = MakeUserPreset("Other", config);
  EXPECT_TRUE(cache_->SavePreset(another));
  EXPECT_FALSE(cache_->SavePreset(MakeUserPreset("Lost", Guid::CreateUnique())));
  EXPECT_FALSE(cache_->SavePreset(MakeUserPreset("Nobody", config, 1.0f, Guid())) ||
               cache_->SavePreset(MakeConfigPreset("Nobody", "dialog", 1.0f, Guid())));
  fs::rename(Mine("Other.orvel"), Mine("Radio.orvel"));
  cache_->Reload();
  EXPECT_TRUE(cache_->SavePreset(MakeUserPreset("Radio", config)));
  EXPECT_THAT(UserNames(*cache_, config), ElementsAre("Other", "Radio"));
  ExpectDiskHolds(*cache_);
  EXPECT_TRUE(cache_->RemovePreset(another.Guid));
  EXPECT_FALSE(cache_->RemovePreset(another.Guid));
}

TEST_F(PresetsCacheTest, WhatAPersonDidToTheFolderIsRepairedOnce) {
  const auto voice = MakeUserPreset("Voice", AddConfig(*cache_));
  ASSERT_TRUE(cache_->SavePreset(voice));
  fs::copy(Mine("Voice.orvel"), Mine("Voice 2.orvel"));
  fs::copy(Root() / "Mine", Root() / "Mine too", fs::copy_options::recursive);
  fs::copy(Root() / "Mine" / "dialog", Root() / "Mine" / "music");
  fs::rename(Root() / "Default" / "sfx", Root() / "Default" / "foley");
  WriteText(Mine("broken.orvel"), "{");
  teskcore::debug::SetTraceLevel("app.Presets", 2);  // what is skipped is told above that
  const auto cache = Open();
  EXPECT_THAT(traces_, Each(StartsWith("Fixing preset with duplicate GUID: ")));
  EXPECT_TRUE(WasTraced(Mine("Voice 2.orvel").string()));
  ExpectDiskHolds(*cache);

  // The folder's names are the authority; a factory preset keeps its own name.
  std::vector<std::string> configs;
  for (const auto& config : ConfigsOf(*cache)) {
    configs.push_back(config.Name + ":" + config.PresetData.ModeID);
    if (!config.Name.starts_with("Mine")) continue;
    // Of two with one guid the second is the copy, and all belong to their folder.
    EXPECT_THAT(UserNames(*cache, config.Guid), ElementsAre("Voice", "Voice copy"));
    const auto users = UsersOf(*cache, config.Guid);
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
}

TEST_F(PresetsCacheTest, BadFilesStayAsTheyAreAndHideNoOthers) {
  const Guid config = AddConfig(*cache_);
  ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Voice", config)));
  WriteText(Mine("broken.orvel"), "{");
  WriteText(Mine("null.orvel"), R"({"Name": "No guid"})");
  WriteText(Root() / "Broken" / "dialog" / "(Config).orvel", "[1, 2]");
  fs::create_directory(Mine("folder.orvel"));
  fs::copy(Mine("(Config).orvel"), Mine("Backup.orvel"));  // of the other kind
  const auto before = Snapshot(Root());
  const auto cache = Open();
  EXPECT_THAT(UserNames(*cache, config), ElementsAre("Voice"));
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(5));
  EXPECT_EQ(Snapshot(Root()), before);
  EXPECT_TRUE(WasTraced(Mine("broken.orvel").string()));
  // Removing takes what is the preset's own, and leaves the rest.
  EXPECT_TRUE(cache->RemoveConfigPreset(config));
  EXPECT_TRUE(fs::exists(Mine("broken.orvel")) && !fs::exists(Mine("Voice.orvel")));
  EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Broken"))) << "it is somebody's";
}

TEST_F(PresetsCacheTest, LinksAreNoneOfTheStores) {
  const fs::path outside = folder_.Path() / "outside";
  fs::rename(Root(), outside);
  fs::create_directory_symlink(outside, Root());  // but the root itself
  const Guid mine = AddConfig(*cache_);
  ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Voice", mine)));
  const fs::path there = folder_.Path() / "there";
  fs::copy(Root() / "Mine", there, fs::copy_options::recursive);
  fs::create_directory_symlink(there, Root() / "Behind");
  fs::create_directories(Root() / "Other");
  fs::create_directory_symlink(there / "dialog", Root() / "Other/dialog");
  fs::create_directories(Root() / "Third/dialog");
  fs::create_symlink(there / "dialog/(Config).orvel", Root() / "Third/dialog/(Config).orvel");
  fs::create_symlink("Voice.orvel", Mine("Alias.orvel"));
  for (const char* name : {".renamed", ".temporary", "Radio.orvel"}) {
    fs::create_symlink(there / "dialog/Voice.orvel", Mine(name));
  }
  const auto before = Snapshot(there);
  const auto cache = Open();
  EXPECT_EQ(Describe(*cache), Describe(*cache_));
  EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Behind", "music")));
  EXPECT_FALSE(cache->CreateConfigPreset(MakeConfigPreset("Other")));
  EXPECT_TRUE(cache->SavePreset(MakeUserPreset("Radio", mine))) << "in the place of the link";
  auto config = MakeConfigPreset("Renamed", "dialog", 6.0f, mine);
  EXPECT_TRUE(cache->SavePreset(config));
  config.Name = "Behind";
  EXPECT_FALSE(cache->SavePreset(config));
  ExpectDiskHolds(*cache);
  EXPECT_TRUE(cache->AddTemporaryPreset(MakeConfigPreset("Behind"))) << "as the second";
  // A link that takes a folder's place while the program runs.
  const Guid voice = UsersOf(*cache, mine).back().Guid;
  const auto known = Describe(*cache);
  fs::remove_all(Root() / "Renamed/dialog");
  fs::create_directory_symlink(there / "dialog", Root() / "Renamed/dialog");
  config.Name = "Renamed";
  EXPECT_FALSE(cache->SavePreset(config) || cache->SavePreset(MakeUserPreset("New", mine)));
  EXPECT_FALSE(cache->RemovePreset(voice) || cache->RemovePreset(voice, mine));
  EXPECT_EQ(Describe(*cache), known);
  EXPECT_EQ(Snapshot(there), before);
}

TEST_F(PresetsCacheTest, ConfigurationPresetsAreCreatedRenamedAndRemoved) {
  auto mine = MakeConfigPreset("Mine");
  EXPECT_TRUE(cache_->SavePreset(mine));  // unknown: it is created
  EXPECT_TRUE(cache_->CreateConfigPreset(MakeConfigPreset("Mine", "music")));
  mine.Name = "Renamed";
  EXPECT_TRUE(cache_->SavePreset(mine));
  EXPECT_TRUE(fs::exists(Root() / "Mine" / "music")) << "of another preset";
  ExpectDiskHolds(*cache_);
  mine.PresetData.ModeID = "music";
  EXPECT_FALSE(cache_->SavePreset(mine)) << "a preset stays in its mode";
  EXPECT_TRUE(cache_->RemoveConfigPreset(mine.Guid));
  EXPECT_FALSE(cache_->RemoveConfigPreset(mine.Guid));
  // The factory's folder is made once: what a person removed from it does not come back.
  EXPECT_TRUE(cache_->RemoveConfigPreset(kMusicTemplate));
  ExpectDiskHolds(*cache_);
}

TEST_F(PresetsCacheTest, TemporaryPresetsLiveUntilTheyAreRemoved) {
  const auto kept = MakeConfigPreset("Show");
  ASSERT_TRUE(cache_->CreateConfigPreset(kept));
  auto temporary = MakeConfigPreset("Show");
  EXPECT_TRUE(cache_->AddTemporaryPreset(temporary));
  EXPECT_TRUE(cache_->AddTemporaryPreset(temporary)) << "it is one already";
  EXPECT_TRUE(cache_->FindPreset(temporary.Guid, temporary));
  EXPECT_EQ(temporary.Name, "Show 2") << "a taken name gets a number";
  EXPECT_TRUE(cache_->AddTemporaryPreset(MakeConfigPreset("Default")));
  EXPECT_FALSE(cache_->AddTemporaryPreset(kept));
  EXPECT_TRUE(cache_->RemoveTemporaryPreset(kept.Guid)) << "no temporary one, it stays";
  fs::rename(Root() / "Show 2", Root() / "Kept");
  fs::remove_all(Root() / "Default 2");
  cache_->Reload();
  cache_->RemoveTemporaryPresets();
  EXPECT_THAT(ConfigsOf(*cache_), SizeIs(6));
  EXPECT_EQ(ConfigsOf(*cache_).front().Name, "Kept") << "a person's own, by its name";
}

TEST_F(PresetsCacheTest, ATemporaryThatACrashLeftGoesUnlessItIsOrHoldsWork) {
  for (const char* name : {"Used", "Unused", "Elsewhere"}) {
    ASSERT_TRUE(cache_->AddTemporaryPreset(MakeConfigPreset(name)));
  }
  ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Voice", ConfigsOf(*cache_)[2].Guid)));
  // Another program that still runs owns this one.
  const fs::path mark = Root() / "Elsewhere" / "dialog" / ".temporary";
  const std::string text = ReadText(mark);
  WriteText(mark, text.substr(0, text.rfind('\n') + 1) + "1");
  // A mark counts for the folder that it was made for.
  fs::copy(Root() / "Unused", Root() / "Ours", fs::copy_options::recursive);
  const auto cache = Open();
  EXPECT_TRUE(fs::exists(Root() / "Ours") && !fs::exists(Root() / "Unused"));
  EXPECT_TRUE(fs::exists(Root() / "Elsewhere" / "dialog" / "(Config).orvel"));
  cache->RemoveTemporaryPresets();
  EXPECT_TRUE(fs::exists(Root() / "Used" / "dialog" / "(Config).orvel"));
  EXPECT_FALSE(fs::exists(Root() / "Used" / "dialog" / ".temporary")) << "an ordinary one now";
}

TEST_F(PresetsCacheTest, ATemporaryThatGoesLeavesWhatWasSavedUnderIt) {
  const auto session = MakeConfigPreset("Session");
  auto voice = MakeUserPreset("Voice");
  ASSERT_TRUE(cache_->SavePreset(voice) && cache_->AddTemporaryPreset(session));
  ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Voice", session.Guid, 2.0f)));
  // Another process saves here, too, and somebody copies a preset, twice, and changes one copy.
  const std::size_t count = UsersOf(*cache_, kDialogTemplate).size();
  const auto put = [this](const std::string& file, const UserPreset& preset) {
    std::string text;
    ASSERT_TRUE(WritePreset(preset, text));
    WriteText(Root() / "Session/dialog" / file, text);
  };
  put("Theirs.orvel", MakeUserPreset("Theirs", session.Guid));
  const auto same = UsersOf(*cache_, kDialogTemplate).front();
  put("Same.orvel", same);
  voice.Name = "Changed";
  put("Changed.orvel", voice);
  EXPECT_TRUE(cache_->RemoveTemporaryPreset(session.Guid));
  EXPECT_FALSE(fs::exists(Root() / "Session"));
  EXPECT_THAT(UserNames(*cache_, kDialogTemplate),
              IsSupersetOf({"Voice", "Voice 2", "Theirs", "Changed"}));
  EXPECT_THAT(UsersOf(*cache_, kDialogTemplate), SizeIs(count + 3));
  // What cannot be read may be somebody's, and would be listed nowhere.
  ASSERT_TRUE(cache_->AddTemporaryPreset(session));
  WriteText(Root() / "Session/dialog/Unread.orvel", "{");
  EXPECT_FALSE(cache_->RemoveTemporaryPreset(session.Guid));
  EXPECT_FALSE(cache_->IsTemporaryPreset(session.Guid));
  ExpectDiskHolds(*cache_);
}

TEST_F(PresetsCacheTest, WhatCannotBeWrittenChangesNeitherDiskNorMemory) {
  auto mine = MakeConfigPreset("Mine");
  ASSERT_TRUE(cache_->CreateConfigPreset(mine));
  auto voice = MakeUserPreset("Voice", mine.Guid);
  ASSERT_TRUE(cache_->SavePreset(voice));
  fs::rename(Mine("Voice.orvel"), Mine("Radio.orvel"));
  fs::create_directories(Mine("Blocked.orvel") / "in the way");
  cache_->Reload();
  WriteText(Root() / "Blocked", "no folder");
  const auto before = Snapshot(Root());
  const auto known = Describe(*cache_);
  voice.Name = mine.Name = "Blocked";
  EXPECT_FALSE(cache_->SavePreset(voice) || cache_->SavePreset(mine));
  const float unwritable = std::nanf("");  // JSON has no such number
  EXPECT_FALSE(cache_->SavePreset(MakeUserPreset("Radio", mine.Guid, unwritable)));
  mine.PresetData.Models["model_volume"].SetValue("MaxGain", unwritable);
  for (const char* name : {"Mine", "Renamed"}) {
    mine.Name = name;
    EXPECT_FALSE(cache_->SavePreset(mine));
  }
  EXPECT_EQ(Describe(*cache_), known);
  EXPECT_EQ(Snapshot(Root()), before);
}

TEST_F(PresetsCacheTest, OfTwoWithOneGuidTheFactorysKeepIt) {
  AddConfig(*cache_);
  fs::copy(Root() / "Default", Root() / "Copy", fs::copy_options::recursive);
  const auto cache = Open();
  Preset<ConfigPresetData> factory;
  EXPECT_TRUE(cache->GetFactoryConfigPreset("dialog", factory));
  EXPECT_EQ(factory.Guid, kDialogTemplate) << "its copy gets the new guid";
  EXPECT_THAT(ConfigsOf(*cache), SizeIs(9));
  EXPECT_THAT(UsersOf(*cache, kDialogTemplate), SizeIs(16));
  ExpectDiskHolds(*cache);
  factory.Name = "Mine now";
  EXPECT_FALSE(cache->SavePreset(factory)) << "the factory's keep their name";
}

TEST_F(PresetsCacheTest, MigrationCopiesOrMovesWhatCanBeFitted) {
  const Guid from = AddConfig(*cache_, "From");
  const Guid to = AddConfig(*cache_, "To");
  const auto fits = MakeUserPreset("Fits", from);
  ASSERT_TRUE(cache_->SavePreset(fits) && cache_->SavePreset(MakeUserPreset("Refused", from)));
  cache_->SetMigrateUserPresetFunction([&](Preset<UserPresetData>& preset) {
    EXPECT_EQ(cache_->GetMigrationSource(), from);
    return preset.Name == "Fits";
  });
  EXPECT_TRUE(cache_->MigrateUserPresets(from, to, false));
  EXPECT_THAT(UserNames(*cache_, to), ElementsAre("Fits"));
  // Of one guid in two folders, the one that is meant goes.
  EXPECT_TRUE(cache_->RemovePreset(fits.Guid, to));
  EXPECT_FALSE(cache_->RemovePreset(fits.Guid, to) || cache_->RemovePreset(fits.Guid, Guid()));
  EXPECT_THAT(UsersOf(*cache_, from), SizeIs(2));
  EXPECT_TRUE(cache_->MigrateUserPresets(from, to, true));
  EXPECT_THAT(UserNames(*cache_, to), ElementsAre("Fits", "Refused"));
  EXPECT_NE(UsersOf(*cache_, to)[0].Guid, fits.Guid);
  const auto known = Describe(*cache_);
  EXPECT_TRUE(cache_->MigrateUserPresets(from, from, true));
  EXPECT_EQ(Describe(*cache_), known);
  EXPECT_FALSE(cache_->MigrateUserPresets(Guid::CreateUnique(), to, true));
  EXPECT_FALSE(cache_->MigrateUserPresets(from, Guid::CreateUnique(), true));
  ExpectDiskHolds(*cache_);
}

}  // namespace
}  // namespace orvel::test
