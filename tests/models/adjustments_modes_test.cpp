#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/definitions/section_registry.h"
#include "orvel/models/adjustments_modes_json.h"

namespace orvel {
namespace {

TEST(AdjustmentsModes, TheShippedModesHaveTheirSectionsInOrder) {
  const struct {
    const char* modeID;
    const char16_t* name;
    ClipType type;
    std::vector<std::string> sections;
  } expected[] = {
      {"dialog",
       u"Dialogue",
       type_dialog,
       {"model_loudness", "model_restoration", "model_clarity", "model_soundeffects",
        "model_volume"}},
      {"music", u"Music", type_music, {"model_loudness", "model_duration", "model_volume"}},
      {"sfx",
       u"SFX",
       type_sfx,
       {"model_loudness", "model_soundeffects", "model_pan", "model_volume"}},
      {"ambience",
       u"Ambience",
       type_ambience,
       {"model_loudness", "model_soundeffects", "model_stereowidth", "model_volume"}},
  };
  const auto modes = GetDefaultAdjustmentsModeDescriptors();
  ASSERT_EQ(modes.size(), std::size(expected));
  for (std::size_t i = 0; i < modes.size(); ++i) {
    EXPECT_EQ(modes[i].modeID, expected[i].modeID);
    EXPECT_EQ(modes[i].localizedDisplayName, expected[i].name);
    EXPECT_EQ(modes[i].ClipType, expected[i].type);
    std::vector<std::string> sections;
    for (const auto& section : modes[i].sections) {
      sections.push_back(section.modelID);
      SectionDefinition definition;
      EXPECT_TRUE(factory::CreateSectionModelDefinition(section.modelID, {}, definition));
    }
    EXPECT_EQ(sections, expected[i].sections);
  }
}

TEST(AdjustmentsModes, AHostsDocumentIsReadAsFarAsItMakesSense) {
  std::vector<AdjustmentsModeDescriptor> modes(3);
  EXPECT_FALSE(ParseJSONAdjustmentsModeDescriptors("[", modes));
  EXPECT_EQ(modes.size(), 3u);
  EXPECT_TRUE(ParseJSONAdjustmentsModeDescriptors("{}", modes));
  EXPECT_TRUE(modes.empty());
  EXPECT_TRUE(ParseJSONAdjustmentsModeDescriptors(
      R"([1, {"displayname":"No id"}, {"modeId":"foley","displayname":"Foley","cliptype":"Type_Dialog",
          "sections":[{"modelID":"model_pan"},{"other":1},2]}, {"modeId":"bare","sections":5}])",
      modes));
  ASSERT_EQ(modes.size(), 2u);
  EXPECT_EQ(modes[0].localizedDisplayName, u"Foley");
  EXPECT_EQ(modes[0].ClipType, type_not_set);
  ASSERT_EQ(modes[0].sections.size(), 3u);
  EXPECT_EQ(modes[0].sections[0].modelID, "model_pan");
  EXPECT_EQ(modes[0].sections[1].modelID, "");
  EXPECT_EQ(modes[1].modeID, "bare");
  EXPECT_TRUE(modes[1].sections.empty());
}

}  // namespace
}  // namespace orvel
