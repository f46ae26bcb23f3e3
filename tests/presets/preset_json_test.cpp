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

void ExpectSame(const UserPreset& left, const UserPreset& right) {
  EXPECT_EQ(left.Guid, right.Guid);
  EXPECT_EQ(left.Name, right.Name);
  EXPECT_EQ(left.PresetData, right.PresetData);
}

UserPreset ReadUser(const std::string& text) {
  UserPreset preset;
  ReadPreset(text, preset);
  return preset;
}

TEST(PresetJson, MissingMembersAreEmptyAndUnknownOnesPassedOver) {
  for (const char* text : {"1", "[]", "null", "\"x\"", "{}", R"({"Other":[{}]})"}) {
    ExpectSame(ReadUser(text), UserPreset());
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
  const auto with = [](const std::string& member) { return R"({"Name":"New",)" + member + "}"; };
  for (const char* member :
       {R"("Guid":1)", R"("Guid":null)", R"("Name":[])", R"("Type":{})", R"("PresetData":1)",
        R"("PresetData":null)", R"("PresetData":{"Config":1})", R"("PresetData":{"Models":[]})",
        R"("PresetData":{"Models":{"m":{}}})", R"("PresetData":{"Models":{"m":null}})",
        R"("PresetData":{"Models":{"m":["1"]}})", R"("PresetData":{"Models":{"m":[true]}})"}) {
    auto preset = Voice();
    EXPECT_THROW(ReadPreset(with(member), preset), BadCast) << member;
    ExpectSame(preset, Voice());
    std::vector<UserPreset> presets(1);
    EXPECT_THROW(ReadPresets("[" + with(member) + "]", presets), BadCast) << member;
    EXPECT_THROW(ReadPresets("{}", presets), BadCast);
    EXPECT_EQ(presets.size(), 1u);
  }
  const auto number = [&with](const std::string& text) {
    return with(R"("PresetData":{"Models":{"m":[)" + text + "]}}");
  };
  for (const auto& text : {number("NaN"), number("1e999"), std::string("{"), std::string()}) {
    EXPECT_THROW(ReadUser(text), JSONError) << text;
  }
  EXPECT_THROW(ReadUser(number("1e39")), boost::numeric::positive_overflow);
  EXPECT_THROW(ReadUser(number("-1e39")), boost::numeric::negative_overflow);
}

TEST(UserPresetData, CountsAsEqualWithinTheToleranceOnly) {
  const auto data = [](float value) {
    return MakeUserPreset("", kDialogTemplate, value).PresetData;
  };
  for (const float by : {0.000005f, -0.000009f, 0.00002f, -0.0001f, std::nanf("")}) {
    EXPECT_EQ(data(0.0f) == data(by), std::abs(by) < 0.00001f) << by;
  }
}

}  // namespace
}  // namespace orvel::test
