#include "orvel/models/section_model_utils.h"

#include <gtest/gtest.h>

#include "tests/support/fake_section_model.h"

namespace orvel {
namespace {

using test::FakeSectionModel;

enum Param : int { kEnabled, kAmount, kReadBack, kTarget };

// clang-format off
const std::vector<ParamDefinition> kParams = {
  // id         default min   max   flags                                           name       description key
  { kEnabled,   1.0f,   0.0f, 1.0f,   kParamFlag_Switch,                            "Enabled", "",         "ON"     },
  { kAmount,    5.0f,   0.0f, 10.0f,  kParamFlag_None,                              "Amount",  "",         "AMOUNT" },
  { kReadBack,  0.0f,   0.0f, 1.0f,   kParamFlag_NotStored | kParamFlag_Stepped,    "Read",    "",         "READ"   },
  { kTarget,    2.0f,   0.0f, 4.0f,   kParamFlag_DefaultWhenOff,                    "Target",  "",         "TARGET" },
};
// clang-format on

class ModelUtils : public ::testing::Test {
 protected:
  std::vector<float> GetList() {
    std::vector<float> list;
    EXPECT_TRUE(modelutils::GetParamList(model, list));
    return list;
  }
  boost::intrusive_ptr<FakeSectionModel> fake{new FakeSectionModel(kParams)};
  boost::intrusive_ptr<SectionModelInterface> model{fake};
};

TEST_F(ModelUtils, TheStoredListLeavesOutReadBacks) {
  fake->values = {1.0f, 0.25f, 0.7f, 1.0f};
  EXPECT_EQ(GetList(), (std::vector<float>{1.0f, 2.5f, 4.0f}));
  const auto before = fake->values;
  EXPECT_TRUE(modelutils::SetParamList(model, GetList()));
  EXPECT_EQ(fake->values, before);
}

TEST_F(ModelUtils, WhileTheSectionIsOffATargetIsStoredAsItsDefault) {
  fake->values = {0.49f, 0.25f, 0.0f, 1.0f};
  EXPECT_EQ(GetList()[2], 2.0f);
  fake->values[kEnabled] = 0.5f;
  EXPECT_EQ(GetList()[2], 4.0f);
  // A switch that cannot be read does not switch off; the read of the switch itself then fails the
  // list.
  fake->values[kEnabled] = 0.0f;
  fake->readStatuses[kEnabled] = 4;
  EXPECT_EQ(GetList()[2], 4.0f);
  fake->readStatuses.clear();
  fake->hasDefinition = false;
  EXPECT_EQ(GetList()[2], 4.0f);
}

TEST_F(ModelUtils, AToleratedReadCountsAndAFailedOneKeepsTheList) {
  fake->readStatuses[kAmount] = 4;
  EXPECT_EQ(GetList()[1], 5.0f);
  fake->readStatuses[kAmount] = 5;
  std::vector<float> list = {7.0f};
  EXPECT_FALSE(modelutils::GetParamList(model, list));
  EXPECT_EQ(list, std::vector<float>{7.0f});
}

TEST_F(ModelUtils, WithoutAModelNothingIsReadAndNothingSet) {
  std::vector<float> list;
  std::map<int, float> map;
  EXPECT_FALSE(modelutils::GetParamList(nullptr, list));
  EXPECT_FALSE(modelutils::SetParamList(nullptr, {1.0f}));
  EXPECT_FALSE(modelutils::GetParamIdValueMap(nullptr, {1.0f}, map));
  modelutils::GetDefaultModelParams(nullptr, map);
  EXPECT_TRUE(map.empty());
}

TEST_F(ModelUtils, AValueThatCannotBeConvertedIsStoredAsZero) {
  fake->unconvertible = kAmount;
  EXPECT_EQ(GetList()[1], 0.0f);
  fake->unconvertible = -1;
  fake->unread = kAmount;
  EXPECT_EQ(GetList()[1], -10.0f);  // below every range, so that it shows
}

TEST_F(ModelUtils, AShortListSetsTheLeadingParametersAndALongOneNoMoreThanThereAre) {
  EXPECT_TRUE(modelutils::SetParamList(model, {0.0f, 10.0f}));
  EXPECT_EQ(fake->values, (std::vector<float>{0.0f, 1.0f, 0.0f, 0.5f}));
  EXPECT_TRUE(modelutils::SetParamList(model, {1.0f, 0.0f, 4.0f, 9.0f, 9.0f}));
  EXPECT_EQ(fake->values, (std::vector<float>{1.0f, 0.0f, 0.0f, 1.0f}));
  fake->writes = 0;
  EXPECT_TRUE(modelutils::SetParamList(model, {}));
  EXPECT_EQ(fake->writes, 0);
}

TEST_F(ModelUtils, AFailedWriteIsTakenBackOnce) {
  const auto before = fake->values;
  fake->writeStatuses = {8};
  EXPECT_FALSE(modelutils::SetParamList(model, {0.0f, 10.0f, 4.0f}));
  EXPECT_EQ(fake->values, before);
  fake->writes = 0;
  fake->writeStatuses.assign(100, 1);  // refuses every write
  EXPECT_FALSE(modelutils::SetParamList(model, {0.0f}));
  EXPECT_EQ(fake->writes, 2);
}

TEST_F(ModelUtils, TheValueMapStopsAtWhatCannotBeConvertedButKeepsItsEntry) {
  fake->unconvertible = kAmount;
  std::map<int, float> map = {{kEnabled, 0.25f}};
  EXPECT_FALSE(modelutils::GetParamIdValueMap(model, {1.0f, 5.0f, 2.0f}, map));
  EXPECT_EQ(map, (std::map<int, float>{{kEnabled, 0.25f}, {kAmount, 0.0f}}));
  fake->writes = 0;
  EXPECT_FALSE(modelutils::SetParamList(model, {1.0f, 5.0f, 2.0f}));
  EXPECT_EQ(fake->writes, 0);
}

TEST_F(ModelUtils, DefaultsAreNormalisedAndReplaceWhatTheMapHeld) {
  std::map<int, float> map = {{kAmount, 0.9f}, {kReadBack, 0.9f}};
  modelutils::GetDefaultModelParams(model, map);
  EXPECT_EQ(map, (std::map<int, float>{
                     {kEnabled, 1.0f}, {kAmount, 0.5f}, {kReadBack, 0.9f}, {kTarget, 0.5f}}));
  fake->unconvertible = kAmount;
  modelutils::GetDefaultModelParams(model, map);
  EXPECT_EQ(map[kAmount], 0.0f);
}

}  // namespace
}  // namespace orvel
