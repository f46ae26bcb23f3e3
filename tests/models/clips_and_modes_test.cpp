#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/text.h"
#include "orvel/models/adjustments_modes_json.h"
#include "orvel/models/clip_keys.h"
#include "orvel/models/clip_model_utils.h"
#include "orvel/models/mode_descriptor_cache.h"
#include "tests/support/fake_session.h"

namespace orvel {
namespace {

TEST(AdjustmentsModes, TheShippedModesHaveTheirSectionsInOrder) {
  std::string modes;
  for (const auto& mode : GetDefaultAdjustmentsModeDescriptors()) {
    modes += mode.modeID + "|" + UTF16to8(mode.localizedDisplayName) + "|" +
             GetClipTypeText(mode.ClipType) + ":";
    for (const auto& section : mode.sections) modes += " " + section.modelID;
    modes += "\n";
  }
  EXPECT_EQ(modes,
            "dialog|Dialogue|type_dialog: model_loudness model_restoration model_clarity "
            "model_soundeffects model_volume\n"
            "music|Music|type_music: model_loudness model_duration model_volume\n"
            "sfx|SFX|type_sfx: model_loudness model_soundeffects model_pan model_volume\n"
            "ambience|Ambience|type_ambience: model_loudness model_soundeffects model_stereowidth "
            "model_volume\n");
}

TEST(AdjustmentsModes, AHostsDocumentIsReadAsFarAsItMakesSenseAndItsCacheAnswers) {
  std::vector<AdjustmentsModeDescriptor> modes(3);
  EXPECT_FALSE(ParseJSONAdjustmentsModeDescriptors("[", modes));
  EXPECT_EQ(modes.size(), 3u);
  EXPECT_TRUE(ParseJSONAdjustmentsModeDescriptors("{}", modes));
  EXPECT_TRUE(modes.empty());
  EXPECT_TRUE(ParseJSONAdjustmentsModeDescriptors(
      R"([1, {"displayname":"No id"}, {"modeId":"dialog","displayname":"Foley","cliptype":"type_sfx",
          "sections":[{"modelID":"model_pan"},{"other":1},2]}, {"modeId":"else","cliptype":"Type_SFX",
          "sections":5}, {"modeId":"other","cliptype":"type_other"}, {"modeId":"dialog"}])",
      modes));
  ModeDescriptorCache::Initialize(modes);
  const auto* cache = ModeDescriptorCache::Get();
  EXPECT_EQ(cache->GetAdjustmentsModes(), (std::set<std::string>{"dialog", "else", "other"}));
  EXPECT_EQ(cache->GetAdjustmentsModeInfos().at(0).localizedDisplayName, u"Foley");
  std::vector<SectionDescriptor> sections;
  EXPECT_TRUE(cache->GetSectionDescriptors("dialog", sections));
  EXPECT_FALSE(cache->GetSectionDescriptors("Dialog", sections));
  ASSERT_EQ(sections.size(), 3u);  // of the first of two with one id
  EXPECT_EQ(sections[0].modelID + "," + sections[1].modelID, "model_pan,");
  ClipType type = type_music;
  EXPECT_TRUE(cache->GetClipTypeFromAdjustmentsMode("else", type));
  EXPECT_EQ(type, type_not_set);
  EXPECT_FALSE(cache->GetClipTypeFromAdjustmentsMode("other", type));
  EXPECT_EQ(type, type_other);
  EXPECT_TRUE(cache->GetClipTypeFromAdjustmentsMode(kAdjustmentsModeUnknown, type));
  EXPECT_EQ(type, type_not_set);
  EXPECT_TRUE(cache->IsValidMode("other"));
  EXPECT_FALSE(cache->IsValidMode(kAdjustmentsModeUnknown));
  EXPECT_EQ(ModeDescriptorCache::GetAdjustmentsModeDisplayNameFromModeId("dialog"), u"Dialogue");
  EXPECT_EQ(ModeDescriptorCache::GetAdjustmentsModeDisplayNameFromModeId("foley"), u"foley");
  ModeDescriptorCache::Terminate();
}

TEST(ClipModelUtils, SeveralClipsGiveWhatTheyShareOrTheFirstThatDiffers) {
  const Guid a = Guid::CreateUnique();
  const Guid b = Guid::CreateUnique();
  const std::map<char, std::tuple<ClipType, std::string, Guid, int>> kinds = {
      {'m', {type_music, "music", a, 0}},
      {'s', {type_sfx, "sfx", b, 0}},
      {'!', {type_sfx, "sfx", a, 77}},
      {'-', {type_not_set, kAdjustmentsModeUnknown, Guid(), 0}}};
  const struct {
    std::string clips;
    int status;
    ClipType type;
    std::string modeID;
    int guidStatus;
    Guid guid;
  } rows[] = {
      {"", 0, type_not_set, kAdjustmentsModeUnknown, 0, Guid()},
      {"mm", 0, type_music, "music", 0, a},
      {"mmsm", 5, type_sfx, "sfx", 5, Guid()},
      // A clip that cannot be read looks like one that has nothing set.
      {"m!", 5, type_not_set, kAdjustmentsModeUnknown, 77, a},
      {"-!m", 77, type_not_set, kAdjustmentsModeUnknown, 77, Guid()},
      {"!m", 77, type_not_set, kAdjustmentsModeUnknown, 77, Guid()},
  };
  for (const auto& row : rows) {
    MixTypeClipModels clips;
    for (const char kind : row.clips) {
      const boost::intrusive_ptr<test::FakeClip> clip(new test::FakeClip("clip"));
      std::tie(clip->type, clip->mode, clip->preset, clip->status) = kinds.at(kind);
      clips.push_back(clip);
    }
    ClipType type = type_other;
    std::string modeID = "before";
    Guid guid = b;
    EXPECT_EQ(modelutils::GetClipType(clips, type), row.status);
    EXPECT_EQ(type, row.type);
    EXPECT_EQ(modelutils::GetAdjustmentsMode(clips, modeID), row.status);
    EXPECT_EQ(modeID, row.modeID);
    EXPECT_EQ(modelutils::GetUserPresetGuid(clips, guid), row.guidStatus);
    EXPECT_EQ(guid, row.guid);
  }
}

}  // namespace
}  // namespace orvel
