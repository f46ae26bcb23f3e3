#include <gmock/gmock.h>

#include "orvel/core/localizer.h"
#include "orvel/presets/cache_based_presets_handler.h"
#include "tests/support/preset_store.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;

class PresetsHandlerTest : public PresetStore {
 protected:
  PresetsHandlerTest() {
    const auto config = MakeConfigPreset("Mine");
    cache_->CreateConfigPreset(config);
    config_ = config.Guid;
    handler_ = new UserPresetsHandler(cache_, [this](const Preset<UserPresetData>& preset) {
      return preset.PresetData.Config == config_;
    });
    handler_->RegisterForStateChanges([this] { ++changes_; });
  }

  Guid Add(const std::string& name, float value = 1.0f) {
    const auto preset = MakeUserPreset(name, config_, value);
    EXPECT_TRUE(cache_->SavePreset(preset));
    return preset.Guid;
  }

  void Edit(float value) {
    auto data = handler_->GetWorkingData();
    data.Models["model_volume"][1] = value;
    handler_->SetWorkingData(data);
  }

  Cache cache_ = Open();
  Guid config_;
  boost::intrusive_ptr<UserPresetsHandler> handler_;
  int changes_ = 0;
};

constexpr char kDefaultName[] = "$$$/orvel/Presets/DefaultPresetName=(Default)";

TEST_F(PresetsHandlerTest, TheListIsSortedAsItIsReadWithTheDefaultFirst) {
  for (const char* name :
       {"zebra", "Apple", kDefaultName, "\xC3\xA9t\xC3\xA9", "$$$/x=Banana", "apple 2", "!"}) {
    Add(name);
  }
  std::vector<std::string> names;
  for (const auto& [guid, name] : handler_->GetPresetList()) names.push_back(name);
  EXPECT_THAT(names, ElementsAre(kDefaultName, "!", "Apple", "apple 2", "$$$/x=Banana",
                                 "\xC3\xA9t\xC3\xA9", "zebra"));
  Preset<UserPresetData> preset;
  EXPECT_TRUE(handler_->GetDefaultPreset(preset));
  // Whose selected preset is removed gets the default; there may be none.
  const Guid voice = Add("Voice");
  EXPECT_TRUE(handler_->Select(voice));
  EXPECT_FALSE(handler_->Select(Guid::CreateUnique()) || handler_->Remove(Guid::CreateUnique()));
  EXPECT_TRUE(handler_->Remove(voice));
  EXPECT_EQ(handler_->GetCurrentPreset().second, kDefaultName);
  for (const auto& [guid, name] : handler_->GetPresetList()) EXPECT_TRUE(handler_->Remove(guid));
  EXPECT_TRUE(handler_->GetCurrentPreset().first.IsNull());
}

TEST_F(PresetsHandlerTest, TheDisplayNameTellsOfEditsAndForgetsThoseThatAreTakenBack) {
  const Guid voice = Add("Voice", -3.0f);
  EXPECT_EQ(handler_->GetDisplayName(), u"");
  EXPECT_TRUE(handler_->Select(voice));
  EXPECT_EQ(handler_->GetDisplayName(), u"Voice");
  Edit(-4.0f);
  EXPECT_EQ(handler_->GetDisplayName(), u"Voice *");
  Edit(-3.0f);
  EXPECT_EQ(handler_->GetDisplayName(), u"Voice");
  EXPECT_TRUE(handler_->Select(Add("$$$/app/Presets/Orvel/FocusedPresetName=Focused")));
  Edit(9.0f);
  EXPECT_EQ(handler_->GetDisplayName(), u"(Custom)") << "the factory's is not one to overwrite";
  EXPECT_TRUE(handler_->Select(Add(kDefaultName)));
  Edit(9.0f);
  EXPECT_EQ(handler_->GetDisplayName(), u"(Custom)");
}

TEST_F(PresetsHandlerTest, SavingSelectsAndRefusesNamesThatAreTaken) {
  const Guid voice = Add("Voice", -3.0f);
  Add("$$$/x=Shown");
  ASSERT_TRUE(handler_->Select(voice));
  Edit(-4.0f);
  const struct {
    std::string name;
    PresetNameStatus status;
  } rows[] = {{"Voice", PresetNameStatus::kTaken},       {"Shown", PresetNameStatus::kTaken},
              {"$$$/x=Shown", PresetNameStatus::kTaken}, {"Default", PresetNameStatus::kReserved},
              {"", PresetNameStatus::kNotAFileName},     {"voice", PresetNameStatus::kUsable}};
  for (const auto& row : rows) {
    EXPECT_EQ(handler_->CheckPresetName(row.name), row.status) << row.name;
    EXPECT_TRUE(row.status == PresetNameStatus::kUsable || !handler_->SaveAsNew(row.name));
  }
  EXPECT_EQ(handler_->GetCurrentPreset().first, voice);
  std::filesystem::create_directories(Root() / "Mine/dialog/Blocked.orvel/in the way");
  EXPECT_FALSE(handler_->SaveAsNew("Blocked"));
  EXPECT_TRUE(handler_->IsModified()) << "a refusal leaves everything as it was";
  changes_ = 0;
  EXPECT_TRUE(handler_->SaveAsNew("Louder"));
  EXPECT_EQ(changes_, 1);
  EXPECT_EQ(handler_->GetDisplayName(), u"Louder");
  Edit(-5.0f);
  auto overwrite = handler_->GetSelectedPreset();
  EXPECT_EQ(overwrite.Type, UserPresetData::kType);
  overwrite.PresetData = handler_->GetWorkingData();
  EXPECT_TRUE(handler_->Save(overwrite));
  EXPECT_FALSE(handler_->IsModified());
  Preset<UserPresetData> stored;
  ASSERT_TRUE(Open()->FindPreset(overwrite.Guid, stored));
  EXPECT_EQ(stored.PresetData.Models["model_volume"][1], -5.0f);
  overwrite.Name = "Voice";
  EXPECT_FALSE(handler_->Save(overwrite)) << "another preset's name";
  UserPresetsHandler bare(nullptr);
  EXPECT_TRUE(bare.GetPresetList().empty() && !bare.Save(overwrite));
}

TEST_F(PresetsHandlerTest, WhatIsNotListedIsNeitherSelectedNorSavedNorRemoved) {
  const Guid voice = Add("Voice");
  const auto other = MakeConfigPreset("A first");
  ASSERT_TRUE(cache_->CreateConfigPreset(other));
  ASSERT_TRUE(cache_->MigrateUserPresets(config_, other.Guid, false));
  // Of one guid in two folders the listed one is meant.
  ASSERT_TRUE(handler_->Select(voice));
  EXPECT_EQ(handler_->GetWorkingData().Config, config_);
  EXPECT_TRUE(handler_->Remove(voice));
  EXPECT_EQ(UsersOf(*cache_, config_).size(), 0u);
  EXPECT_EQ(UsersOf(*cache_, other.Guid).size(), 1u);
  const Guid own = Add("Own");
  ASSERT_TRUE(handler_->Select(own));
  config_ = other.Guid;  // as when another configuration becomes current
  const auto known = Describe(*cache_);
  EXPECT_FALSE(handler_->SaveAsNew("Own") || handler_->Remove(own)) << "of what nobody sees";
  EXPECT_EQ(Describe(*cache_), known);
  EXPECT_EQ(handler_->GetCurrentPreset().first, own);
}

}  // namespace
}  // namespace orvel::test
