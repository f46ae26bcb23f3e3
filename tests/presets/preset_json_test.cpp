#include "orvel/presets/preset_json.h"

#include <cmath>
#include <string>

#include <boost/numeric/conversion/cast.hpp>
#include <gtest/gtest.h>

#include "tests/support/preset_folder.h"

namespace orvel::test {
namespace {

using teskcore::serialization::BadCast;

const Guid kGuid("11111111-2222-4333-8444-555555555555");

UserPreset Voice() { return MakeUserPreset("Voice \u00E9", kDialogTemplate, 3.3333333f, kGuid); }

template <typename T>
void ExpectSame(const Preset<T>& left, const Preset<T>& right) {
  EXPECT_EQ(left.Guid, right.Guid);
  EXPECT_EQ(left.Name, right.Name);
  EXPECT_EQ(left.Type, right.Type);
  EXPECT_EQ(left.Version, right.Version);
  EXPECT_EQ(left.PresetData, right.PresetData);
}

UserPreset ReadUser(const std::string& text) {
  UserPreset preset;
  ReadPreset(text, preset);
  return preset;
}

// That shipped presets are written back byte for byte shows how the text looks.
TEST(PresetJson, WrittenPresetsAreReadBackEqual) {
  std::string text;
  std::vector<UserPreset> users;
  ASSERT_TRUE(WritePresets(std::vector{Voice(), Voice()}, text));
  ReadPresets(text, users);
  ASSERT_EQ(users.size(), 2u);
  ExpectSame(users[1], Voice());
  PropList table;
  table.SetValue("$$$/a=Hall", std::vector<float>{0.5f, 1.0f});
  auto config = MakeConfigPreset("Mine");
  config.PresetData.Models["model_soundeffects"].SetValue("ReverbPresets", table);
  config.PresetData.Models["model_pan"] = {};
  ConfigPreset again;
  ASSERT_TRUE(WritePreset(config, text));
  ReadPreset(text, again);
  ExpectSame(again, config);
}

TEST(PresetJson, MissingMembersAreEmptyAndUnknownOnesPassedOver) {
  for (const char* text : {"1", "[]", "null", "\"x\"", "{}", R"({"Other":[{}]})"}) {
    const auto preset = ReadUser(text);
    EXPECT_TRUE(preset.Guid.IsNull()) << text;
    EXPECT_EQ(preset.Name, "") << text;
  }
  const auto preset = ReadUser(R"({"Version":7,"PresetData":{"ModeID":"sfx"}})");
  EXPECT_EQ(preset.Version, 1u) << "the one that this reader knows";
  EXPECT_EQ(preset.PresetData.ModeID, "sfx");
  std::vector<UserPreset> presets;
  ReadPresets(R"([1,{"Name":"no guid"},{"Guid":"11111111-2222-4333-8444-555555555555"},null])",
              presets);
  EXPECT_EQ(presets.size(), 1u);
}

TEST(PresetJson, AHostileTextIsRefusedWithItsCauseAndLeavesTheTargetAlone) {
  const std::string begin = R"({"Guid":"11111111-2222-4333-8444-555555555555","PresetData":)";
  const auto models = [&](const std::string& value) {
    return begin + R"({"Models":{"model_volume":)" + value + "}}}";
  };
  const std::string texts[] = {
      R"({"Guid":1})", R"({"Guid":null})", R"({"Name":[]})",           R"({"Type":{}})",
      begin + "1}",    begin + "null}",    begin + R"({"Config":1}})", begin + R"({"Models":[]}})",
      models("{}"),    models("null"),     models(R"(["1"])"),         models("[true]")};
  for (const auto& text : texts) {
    auto preset = Voice();
    EXPECT_THROW(ReadPreset(text, preset), BadCast) << text;
    ExpectSame(preset, Voice());
    std::vector<UserPreset> presets(1);
    EXPECT_THROW(ReadPresets("[" + text + "]", presets), BadCast) << text;
    EXPECT_THROW(ReadPresets("{}", presets), BadCast);
    EXPECT_EQ(presets.size(), 1u);
  }
  for (const auto& text : {models("[NaN]"), models("[1e999]"), begin, std::string()}) {
    EXPECT_THROW(ReadUser(text), JSONError) << text;
  }
  EXPECT_THROW(ReadUser(models("[1e39]")), boost::numeric::positive_overflow);
  EXPECT_THROW(ReadUser(models("[-1e39]")), boost::numeric::negative_overflow);
}

TEST(UserPresetData, CountsAsEqualWithinTheToleranceOnly) {
  const auto data = Voice().PresetData;
  for (const float by : {0.000005f, -0.000009f, 0.00002f, -0.0001f, std::nanf("")}) {
    auto other = data;
    other.Models["model_volume"][2] += by;
    EXPECT_EQ(data == other, std::abs(by) < 0.00001f) << by;
  }
  auto other = data;
  other.Models["model_volume"].push_back(0.0f);
  EXPECT_NE(data, other);
}

}  // namespace
}  // namespace orvel::test
