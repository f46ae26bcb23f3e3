#include "orvel/models/clip_model_utils.h"

#include <vector>

#include <gtest/gtest.h>

#include "orvel/models/adjustments_modes_json.h"
#include "orvel/models/clip_keys.h"
#include "orvel/models/mix_type_clip_model_interface.h"
#include "orvel/models/mode_descriptor_cache.h"

namespace orvel {
namespace {

struct Clip : MixTypeClipModelInterface {
  Clip(ClipType clipType, const std::string& mode, const Guid& preset, int readStatus = 0)
      : type(clipType), modeID(mode), guid(preset), status(readStatus) {}
  int GetClipType(ClipType& out) override {
    if (status == 0) out = type;
    return status;
  }
  int GetAdjustmentsMode(std::string& out) override {
    if (status == 0) out = modeID;
    return status;
  }
  int GetUserPresetGuid(Guid& out) override {
    if (status == 0) out = guid;
    return status;
  }
  bool IsReady() override { return true; }
  std::string GetName() override { return "clip"; }
  boost::signals2::connection RegisterForModelChanges(const ChangeSignal::slot_type&) override {
    return {};
  }
  void AttachToModel(bool, OrvelModel*) override {}

  ClipType type;
  std::string modeID;
  Guid guid;
  int status;
};

TEST(ClipModelUtils, SeveralClipsGiveWhatTheyShareOrTheFirstThatDiffers) {
  const Guid a = Guid::CreateUnique();
  const Guid b = Guid::CreateUnique();
  const Clip music(type_music, "music", a);
  const Clip sfx(type_sfx, "sfx", b);
  const Clip dialog(type_dialog, "dialog", b);
  const Clip broken(type_sfx, "sfx", a, 77);
  const Clip unset(type_not_set, kAdjustmentsModeUnknown, Guid());
  const struct {
    std::vector<Clip> clips;
    int status;
    ClipType type;
    std::string modeID;
    int guidStatus;
    Guid guid;
  } rows[] = {
      {{}, 0, type_not_set, kAdjustmentsModeUnknown, 0, Guid()},
      {{music, music}, 0, type_music, "music", 0, a},
      {{music, music, sfx, dialog}, 5, type_sfx, "sfx", 5, Guid()},
      // A clip that cannot be read looks like one that has nothing set.
      {{music, broken}, 5, type_not_set, kAdjustmentsModeUnknown, 77, a},
      {{unset, broken, music}, 77, type_not_set, kAdjustmentsModeUnknown, 77, Guid()},
      {{broken, music}, 77, type_not_set, kAdjustmentsModeUnknown, 77, Guid()},
  };
  for (const auto& row : rows) {
    MixTypeClipModels clips;
    for (const auto& clip : row.clips) clips.push_back(new Clip(clip));
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

TEST(ModeDescriptorCache, AnswersForTheModesItWasGiven) {
  ASSERT_EQ(ModeDescriptorCache::Get(), nullptr);
  auto descriptors = GetDefaultAdjustmentsModeDescriptors();
  descriptors.push_back({"Else", u"Else", type_other, "else", {}});
  descriptors.push_back({"Again", u"Again", type_music, "dialog", {{"model_pan"}}});
  ModeDescriptorCache::Initialize(descriptors);
  const auto* cache = ModeDescriptorCache::Get();
  ASSERT_NE(cache, nullptr);
  EXPECT_EQ(cache->GetAdjustmentsModes(),
            (std::set<std::string>{"ambience", "dialog", "else", "music", "sfx"}));
  std::vector<std::string> ordered = {"before"};
  EXPECT_TRUE(cache->GetOrderedJSONAdjustmentsModes(ordered));
  EXPECT_EQ(ordered,
            (std::vector<std::string>{"dialog", "music", "sfx", "ambience", "else", "dialog"}));
  ASSERT_EQ(cache->GetAdjustmentsModeInfos().size(), 6u);
  EXPECT_EQ(cache->GetAdjustmentsModeInfos()[2].localizedDisplayName, u"SFX");
  std::vector<SectionDescriptor> sections;
  EXPECT_TRUE(cache->GetSectionDescriptors("dialog", sections));
  EXPECT_EQ(sections.size(), 5u);  // the first of two with one id
  EXPECT_FALSE(cache->GetSectionDescriptors("Dialog", sections));
  EXPECT_EQ(sections.size(), 5u);
  const struct {
    std::string modeID;
    bool found;
    ClipType type;
    bool valid;
    std::u16string name;
  } rows[] = {{"dialog", true, type_dialog, true, u"Dialogue"},
              {"else", false, type_other, true, u"else"},
              {"foley", false, type_other, false, u"foley"},
              {kAdjustmentsModeUnknown, true, type_not_set, false, u"AdjustmentsModeUnknown"}};
  for (const auto& row : rows) {
    ClipType type = type_music;
    EXPECT_EQ(cache->GetClipTypeFromAdjustmentsMode(row.modeID, type), row.found) << row.modeID;
    EXPECT_EQ(type, row.type) << row.modeID;
    EXPECT_EQ(cache->IsValidMode(row.modeID), row.valid) << row.modeID;
    EXPECT_EQ(ModeDescriptorCache::GetAdjustmentsModeDisplayNameFromModeId(row.modeID), row.name);
  }
  ModeDescriptorCache::Terminate();
  EXPECT_EQ(ModeDescriptorCache::Get(), nullptr);
}

}  // namespace
}  // namespace orvel
