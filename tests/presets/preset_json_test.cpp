#include "orvel/presets/preset_json.h"

#include <limits>
#include <string>

#include <boost/numeric/conversion/cast.hpp>
#include <gtest/gtest.h>

namespace orvel {
namespace {

using teskcore::serialization::BadCast;

UserPreset MakeUserPreset() {
  UserPreset preset;
  preset.Guid = Guid("11111111-2222-4333-8444-555555555555");
  preset.Name = "$$$/app/Presets/Orvel/FocusedPresetName=Focused \xC3\xA9";
  preset.Type = UserPresetData::kType;
  preset.PresetData.Config = Guid("a8b40e3e-13e7-4c1f-b382-96058f1f691d");
  preset.PresetData.ModeID = "ambience";
  preset.PresetData.Models = {{"model_volume", {1.0f, 0.0f, -2.5f}},
                              {"model_stereowidth", {1.0f, 3.3333333f, 0.133166f}},
                              {"model_none", {}}};
  return preset;
}

ConfigPreset MakeConfigPreset() {
  PropList table;
  table.SetValue("$$$/a=Hall", std::vector<float>{0.5f, 1.0f});
  ConfigPreset preset;
  preset.Guid = Guid("cea63332-1adc-44a9-a6eb-5490f965859b");
  preset.Name = "$$$/app/Presets/DefaultPresetName=(Default)";
  preset.Type = ConfigPresetData::kType;
  preset.PresetData.ModeID = "sfx";
  preset.PresetData.Models["model_pan"] = {};
  preset.PresetData.Models["model_loudness"].SetValue("DefaultLoudness", -21.0f);
  preset.PresetData.Models["model_loudness"].SetValue("LoudnessStandard", std::uint32_t{0});
  preset.PresetData.Models["model_soundeffects"].SetValue("ReverbPresets", table);
  return preset;
}

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

TEST(PresetJson, AConfigurationPresetHasExactlyThisText) {
  std::string text;
  ASSERT_TRUE(WritePresets(std::vector{MakeConfigPreset()}, text));
  EXPECT_EQ(text,
            "[\r\n"
            "\t{\r\n"
            "\t\t\"Guid\": \"cea63332-1adc-44a9-a6eb-5490f965859b\",\r\n"
            "\t\t\"Name\": \"$$$/app/Presets/DefaultPresetName=(Default)\",\r\n"
            "\t\t\"PresetData\": {\r\n"
            "\t\t\t\"ModeID\": \"sfx\",\r\n"
            "\t\t\t\"Models\": {\r\n"
            "\t\t\t\t\"model_loudness\": {\r\n"
            "\t\t\t\t\t\"DefaultLoudness\": {\r\n"
            "\t\t\t\t\t\t\"type\": \"float\",\r\n"
            "\t\t\t\t\t\t\"value\": -21\r\n"
            "\t\t\t\t\t},\r\n"
            "\t\t\t\t\t\"LoudnessStandard\": {\r\n"
            "\t\t\t\t\t\t\"type\": \"std::uint32_t\",\r\n"
            "\t\t\t\t\t\t\"value\": 0\r\n"
            "\t\t\t\t\t}\r\n"
            "\t\t\t\t},\r\n"
            "\t\t\t\t\"model_pan\": {\r\n"
            "\t\t\t\t},\r\n"
            "\t\t\t\t\"model_soundeffects\": {\r\n"
            "\t\t\t\t\t\"ReverbPresets\": {\r\n"
            "\t\t\t\t\t\t\"type\": \"tree::any\",\r\n"
            "\t\t\t\t\t\t\"value\": {\r\n"
            "\t\t\t\t\t\t\t\"$$$/a=Hall\": {\r\n"
            "\t\t\t\t\t\t\t\t\"type\": \"array::float\",\r\n"
            "\t\t\t\t\t\t\t\t\"value\": [\r\n"
            "\t\t\t\t\t\t\t\t\t0.5,\r\n"
            "\t\t\t\t\t\t\t\t\t1\r\n"
            "\t\t\t\t\t\t\t\t]\r\n"
            "\t\t\t\t\t\t\t}\r\n"
            "\t\t\t\t\t\t}\r\n"
            "\t\t\t\t\t}\r\n"
            "\t\t\t\t}\r\n"
            "\t\t\t}\r\n"
            "\t\t},\r\n"
            "\t\t\"Type\": \"1c19ca71-c24c-49cd-8dd5-2cc46018507a\",\r\n"
            "\t\t\"Version\": 1\r\n"
            "\t}\r\n"
            "]");
}

TEST(PresetJson, WrittenPresetsAreReadBackEqualAndWrittenAgainTheSame) {
  std::string text;
  std::string again;
  std::vector<UserPreset> users;
  ASSERT_TRUE(WritePresets(std::vector{MakeUserPreset(), MakeUserPreset()}, text));
  ReadPresets(text, users);
  ASSERT_EQ(users.size(), 2u);
  ExpectSame(users[1], MakeUserPreset());
  ASSERT_TRUE(WritePresets(users, again));
  EXPECT_EQ(again, text);

  ConfigPreset config;
  ASSERT_TRUE(WritePreset(MakeConfigPreset(), text));
  ReadPreset(text, config);
  ExpectSame(config, MakeConfigPreset());
}

TEST(PresetJson, VersionAndTypeAreWrittenAsConstants) {
  auto preset = ReadUser(R"({"Guid":"11111111-2222-4333-8444-555555555555","Version":7})");
  EXPECT_EQ(preset.Version, 1u);
  EXPECT_TRUE(preset.Type.IsNull());
  preset.Version = 9;
  std::string text;
  ASSERT_TRUE(WritePreset(preset, text));
  EXPECT_NE(text.find("\"Type\": \"e3181c3e-b0f2-4014-8e41-9d4dc0d53cf2\""), text.npos);
  EXPECT_NE(text.find("\"Version\": 1\r\n"), text.npos);
}

TEST(PresetJson, MissingMembersAreEmptyAndUnknownOnesPassedOver) {
  for (const char* text : {"1", "[]", "null", "\"x\"", "{}", R"({"Other":[{}]})"}) {
    const auto preset = ReadUser(text);
    EXPECT_TRUE(preset.Guid.IsNull()) << text;
    EXPECT_EQ(preset.Name, "") << text;
  }
  const auto preset = ReadUser(R"({"Name":"a","PresetData":{"ModeID":"sfx"}})");
  EXPECT_TRUE(preset.Guid.IsNull());
  EXPECT_EQ(preset.PresetData.ModeID, "sfx");
  EXPECT_TRUE(preset.PresetData.Models.empty());
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
  for (const std::string& text :
       {std::string(R"({"Guid":1})"), std::string(R"({"Guid":null})"),
        std::string(R"({"Name":[]})"), std::string(R"({"Type":{}})"), begin + "1}", begin + "[]}",
        begin + "null}", begin + R"({"Config":1}})", begin + R"({"ModeID":true}})",
        begin + R"({"Models":[]}})", models("1"), models("{}"), models("null"), models(R"(["1"])"),
        models("[1,[2]]"), models("[null]"), models("[true]")}) {
    auto preset = MakeUserPreset();
    EXPECT_THROW(ReadPreset(text, preset), BadCast) << text;
    ExpectSame(preset, MakeUserPreset());
    std::vector<UserPreset> presets(1);
    EXPECT_THROW(ReadPresets("[" + text + "]", presets), BadCast) << text;
    EXPECT_THROW(ReadPresets("{}", presets), BadCast);
    EXPECT_EQ(presets.size(), 1u);
  }
  for (const std::string& text : {models("[NaN]"), models("[1e999]"), models("[1,"), begin,
                                  std::string(), models("[\"\xFF\"]")}) {
    try {
      ReadUser(text);
      ADD_FAILURE() << text;
    } catch (const JSONError& error) {
      EXPECT_STREQ(error.what(), "JSON not well-formed");
    }
  }
  EXPECT_THROW(ReadUser(models("[1e39]")), boost::numeric::positive_overflow);
  EXPECT_THROW(ReadUser(models("[-1e39]")), boost::numeric::negative_overflow);
}

TEST(PresetJson, ANumberThatIsNotFiniteIsNotWritten) {
  std::string text = "old";
  auto user = MakeUserPreset();
  user.PresetData.Models["model_volume"][1] = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(WritePreset(user, text));
  EXPECT_FALSE(WritePresets(std::vector{MakeUserPreset(), user}, text));
  auto config = MakeConfigPreset();
  config.PresetData.Models["model_loudness"].SetValue("x", std::numeric_limits<float>::infinity());
  EXPECT_FALSE(WritePreset(config, text));
  EXPECT_EQ(text, "old");
}

TEST(UserPresetData, CountsAsEqualWithinTheToleranceOnly) {
  const auto data = MakeUserPreset().PresetData;
  const auto moved = [&](float by) {
    auto other = data;
    other.Models["model_stereowidth"][1] += by;
    return other;
  };
  EXPECT_EQ(data, moved(0.000005f));
  EXPECT_EQ(data, moved(-0.000009f));
  EXPECT_NE(data, moved(0.00002f));
  EXPECT_NE(data, moved(-0.0001f));
  auto other = data;
  other.Models["model_volume"].push_back(0.0f);
  EXPECT_NE(data, other);
  other = data;
  other.Models.erase("model_none");
  EXPECT_NE(data, other);
  other = data;
  other.ModeID = "sfx";
  EXPECT_NE(data, other);
  other = data;
  other.Config = Guid();
  EXPECT_NE(data, other);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_NE(moved(nan), moved(nan));
}

}  // namespace
}  // namespace orvel
