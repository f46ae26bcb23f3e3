#include <functional>
#include <limits>
#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>

#include "orvel/models/section_model_utils.h"
#include "orvel/models/section_multi_model.h"
#include "orvel/models/value_summary.h"
#include "tests/support/fake_section_model.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

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
  fake->writeStatuses = {};
  EXPECT_TRUE(modelutils::SetParamList(model, {0.0f, 10.0f}));
}

TEST_F(ModelUtils, WhatCannotBeConvertedIsZeroAndEndsTheValueMap) {
  std::map<int, float> map = {{kEnabled, 0.25f}};
  fake->unconvertible = kAmount;
  EXPECT_FALSE(modelutils::GetParamIdValueMap(model, {1.0f, 5.0f, 2.0f}, map));
  EXPECT_EQ(map, (std::map<int, float>{{kEnabled, 0.25f}, {kAmount, 0.0f}}));
  EXPECT_FALSE(modelutils::SetParamList(model, {1.0f, 5.0f, 2.0f}));
  EXPECT_EQ(fake->writes, 0);
}

class MultiModel : public ::testing::Test {
 protected:
  MultiModel() {
    multi->RegisterForModelChanges(
        [this](int id, float value) { signals.emplace_back(id, value); });
  }

  // Members in the order of the set, with these values of every parameter.
  void Add(const std::vector<float>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      multi->AddModel(new FakeSectionModel(kParams));
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      Member(i).values.assign(kParams.size(), values[i]);
    }
  }
  FakeSectionModel& Member(std::size_t index) {
    const auto found = std::next(multi->GetModels().begin(), static_cast<std::ptrdiff_t>(index));
    return dynamic_cast<FakeSectionModel&>(**found);
  }
  std::vector<std::pair<int, float>> TakeSignals() { return std::exchange(signals, {}); }

  boost::intrusive_ptr<SectionMultiModel> multi{new SectionMultiModel("dialog")};
  std::vector<std::pair<int, float>> signals;
};

TEST_F(MultiModel, CallsValuesEqualWithinAThousandthAndIdenticalOnlyToTheLastBit) {
  const struct {
    std::vector<float> values;
    int status;
    bool identical;
  } table[] = {
      {{0.5f, 0.5f, 0.5f}, 0, true}, {{0.5f, 0.5004f}, 0, false}, {{0.5f, 0.5f, 0.4f}, 5, false},
      {{1.0f, 0.9989f}, 5, false},   {{-0.5f, -0.6f}, 5, false},  {{-0.5f, -0.5002f}, 0, false},
      {{-0.5f, 0.5f}, 5, false},     {{0.0f, -0.0f}, 0, true},    {{0.0f, -0.1f}, 5, false},
      {{kNan, kNan}, 5, false},      {{0.5f, kNan}, 5, false},    {{kNan}, 0, true},
      {{kNan, 0.5f}, 5, false},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(::testing::PrintToString(row.values));
    multi = new SectionMultiModel("dialog");
    Add(row.values);
    float value = 7.0f;
    EXPECT_EQ(multi->GetParamNormalized(1, value), row.status);
    EXPECT_THAT(value, ::testing::NanSensitiveFloatEq(row.values.front()));
    EXPECT_EQ(multi->ModelsHaveIdenticalSetting(1), row.identical);
  }
}

TEST_F(MultiModel, TakesInOnlyTheModelsOfOneSectionAndEachOnce) {
  float value = 7.0f;
  SectionDefinition definition;
  EXPECT_EQ(multi->GetName(), "model_multi");
  EXPECT_EQ(multi->GetNumParams(), 0);
  EXPECT_EQ(multi->GetParamDefinition(0).id, ParamDefinition().id);
  EXPECT_FALSE(multi->GetSectionDefinition(definition));
  EXPECT_FALSE(multi->ToPhysical(0, 0.5f, value) || multi->ToNormalized(0, 0.5f, value));
  EXPECT_EQ(multi->GetParamNormalized(0, value), 0);
  EXPECT_EQ(value, 7.0f);
  Add({0.1f});
  const boost::intrusive_ptr<FakeSectionModel> other(
      new FakeSectionModel(SectionDefinition("model_other", u"", PropList(), kParams, {}, ""),
                           "dialog", std::make_shared<std::vector<float>>()));
  multi->AddModel(other);
  multi->AddModel(*multi->GetModels().begin());
  multi->AddModel(nullptr);
  EXPECT_EQ(multi->GetModels().size(), 1u);
  Member(0).Announce(2);
  other->Announce(2);
  EXPECT_EQ(TakeSignals().size(), 1u);
  EXPECT_EQ(multi->GetName(), "model_fake");
  EXPECT_TRUE(multi->GetSectionDefinition(definition) && multi->ToPhysical(1, 0.5f, value));
  EXPECT_EQ(definition.GetModelID(), "model_fake");
  EXPECT_EQ(multi->GetAdjustmentsMode(), "dialog");
}

TEST_F(MultiModel, OneFailingModelKeepsNoOtherFromBeingReadOrWritten) {
  Add({0.1f, 0.1f, 0.1f});
  Member(0).writeStatuses = {6};
  Member(1).writeStatuses = {7};
  EXPECT_EQ(multi->SetParamNormalized(1, 0.5f), 7);  // the last status that is not 0
  EXPECT_EQ(Member(2).values[1], 0.5f);
  Member(1).readStatuses[1] = 4;
  float value = 0.0f;
  EXPECT_EQ(multi->GetParamNormalized(1, value), 4);
  Member(0).readStatuses[1] = 6;  // what could not be read counts as -1
  EXPECT_EQ(multi->GetParamNormalized(1, value), kStatus_ValuesDiffer);
  EXPECT_EQ(value, -1.0f);
  EXPECT_TRUE(multi->ModelsHaveIdenticalSetting(1));
}

TEST_F(MultiModel, AWriteSignalsWhenAllAreWrittenAndTakesNoOtherMeanwhile) {
  Add({0.1f, 0.2f, 0.3f});
  int status = 0;
  bool allWritten = false;
  multi->RegisterForModelChanges([&](int id, float) {
    if (id != 1) return;
    allWritten = multi->ModelsHaveIdenticalSetting(1) && multi->ModelsHaveIdenticalSetting(3);
    status = multi->SetParamNormalized(2, 0.9f);
    Member(0).SetParamNormalized(0, 0.3f);
    Member(1).SetParamNormalized(2, 0.4f);
  });
  EXPECT_EQ(multi->SetParamsNormalized({{3, 0.7f}, {1, 0.9f}}), 0);
  EXPECT_TRUE(allWritten);
  EXPECT_EQ(status, kStatus_WriteUnderWay);
  // In ascending order, and afterwards what was changed meanwhile.
  EXPECT_THAT(TakeSignals(),
              ElementsAre(Pair(1, 0.9f), Pair(3, 0.7f), Pair(0, 0.3f), Pair(2, 0.4f)));
  EXPECT_EQ(multi->SetParamNormalized(1, 0.9f), 0);
  EXPECT_THAT(signals, IsEmpty());  // nothing changed
}

TEST_F(MultiModel, SuspensionsNestAndAnyResumeThatAskedForSignalsCounts) {
  Add({0.1f, 0.1f});
  multi->ResumeSignaling(true);  // without a suspension it does nothing
  multi->SuspendSignaling();
  multi->SuspendSignaling();
  multi->AddModel(new FakeSectionModel(kParams));
  Member(0).SetParamNormalized(1, 0.5f);
  multi->ResumeSignaling(true);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(Member(i).suspendCount, 1);
  multi->ResumeSignaling(false);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_THAT(Member(i).resumes, ElementsAre(true));
  EXPECT_THAT(TakeSignals(), ElementsAre(Pair(1, 0.5f)));
  multi->SuspendSignaling();
  Member(0).SetParamNormalized(1, 0.6f);
  multi->ResumeSignaling(false);  // the next suspension starts anew
  EXPECT_THAT(signals, IsEmpty());
}

TEST_F(MultiModel, AChangeOfAllParametersStandsForTheOthersOfItsSuspension) {
  Add({0.1f, 0.1f, 0.1f});
  multi->SuspendSignaling();
  Member(0).changed(2, 0.4f);  // a model that speaks although it was silenced
  Member(0).changed(-1, 0.0f);
  multi->ResumeSignaling(true);
  EXPECT_THAT(TakeSignals(), ElementsAre(Pair(-1, 0.0f)));

  multi->SuspendSignaling();
  for (std::size_t i = 0; i < 3; ++i) Member(i).SetParamNormalized(static_cast<int>(i), 0.5f);
  Member(1).Announce(-1);
  multi->ResumeSignaling(true);
  EXPECT_TRUE(Member(0).resumes.back() && Member(1).resumes.back());
  EXPECT_FALSE(Member(2).resumes.back());
  EXPECT_THAT(TakeSignals(), ElementsAre(Pair(-1, 0.0f), Pair(1, 0.5f)));
}

TEST_F(MultiModel, ASuspensionThatEndsInsideAWriteLeavesTheModelsSilent) {
  Add({0.1f});
  multi->RegisterForModelChanges([&](int, float) {
    multi->SuspendSignaling();
    multi->ResumeSignaling(true);
  });
  multi->SetParamNormalized(1, 0.5f);
  EXPECT_EQ(Member(0).suspendCount, 1);
  EXPECT_THAT(Member(0).resumes, IsEmpty());
}

TEST_F(MultiModel, MayBeLetGoByAListener) {
  const boost::intrusive_ptr<FakeSectionModel> member(new FakeSectionModel(kParams));
  const std::function<void(SectionMultiModel&)> acts[] = {
      [](auto& of) {
        of.SetParamsNormalized({{1, 0.5f}, {2, 0.5f}});
      },
      [&](auto&) { member->SetParamNormalized(1, 0.6f); },
      [&](auto& of) {
        of.SuspendSignaling();
        member->SetParamsNormalized({{1, 0.7f}, {2, 0.7f}});
        of.ResumeSignaling(true);
      }};
  for (const auto& act : acts) {
    multi = new SectionMultiModel("dialog");
    multi->AddModel(member);
    multi->RegisterForModelChanges([this](int, float) { multi.reset(); });
    act(*multi);
    EXPECT_FALSE(multi);
    EXPECT_EQ(member->changed.num_slots(), 0u);
  }
}

TEST_F(MultiModel, AnExceptionGoesOnAfterEverybodyWasReached) {
  Add({0.1f, 0.1f});
  const auto fail = [](int id, float) {
    if (id == 1) throw std::runtime_error("listener");
  };
  multi->RegisterForModelChanges(fail);
  int heard = 0;
  multi->RegisterForModelChanges([&heard](int, float) { ++heard; });
  EXPECT_THROW(multi->SetParamsNormalized({{1, 0.5f}, {2, 0.5f}}), std::runtime_error);
  EXPECT_EQ(heard, 2);
  Member(0).changed.connect(fail);
  EXPECT_THROW(multi->SetParamNormalized(1, 0.6f), std::runtime_error);
  EXPECT_EQ(Member(1).values[1], 0.6f);
  multi->SuspendSignaling();
  Member(0).SetParamNormalized(1, 0.7f);
  EXPECT_THROW(multi->ResumeSignaling(true), std::runtime_error);
  EXPECT_EQ(Member(0).suspendCount + Member(1).suspendCount, 0);
  EXPECT_EQ(multi->SetParamNormalized(3, 0.1f), 0);  // not taken for a write under way
  Member(0).onSetActive = [](bool) { throw std::runtime_error("host"); };
  EXPECT_THROW(multi->SetActive(true), std::runtime_error);
  EXPECT_TRUE(Member(1).active);
}

TEST_F(MultiModel, ASummaryTellsWhatAPanelCanShow) {
  using modelutils::ValueSummary;
  const auto summaryOf = [](const boost::intrusive_ptr<SectionModelInterface>& model) {
    ValueSummary got{true, 9.0f, 9.0f, 9.0f};
    const int status = modelutils::GetValueSummary(model, 1, got);
    return std::vector{static_cast<float>(status), got.mixed ? 1.0f : 0.0f, got.least, got.greatest,
                       got.first};
  };
  const auto none = ElementsAre(kStatus_NoSuchModel, 1.0f, 9.0f, 9.0f, 9.0f);
  EXPECT_THAT(summaryOf(nullptr), none);
  EXPECT_THAT(summaryOf(multi), none);
  Add({0.5f, 0.2f, 0.5004f, 0.5f});
  EXPECT_THAT(summaryOf(multi), ElementsAre(0.0f, 1.0f, 0.2f, 0.5004f, 0.5f));
  EXPECT_THAT(summaryOf(&Member(1)), ElementsAre(0.0f, 0.0f, 0.2f, 0.2f, 0.2f));
  Member(0).readStatuses[1] = 6;
  Member(2).readStatuses[1] = 4;
  EXPECT_THAT(summaryOf(multi), ElementsAre(0.0f, 1.0f, 0.2f, 0.5004f, 0.2f));
  Member(1).values[1] = Member(2).values[1] = 0.5f;
  EXPECT_THAT(summaryOf(multi), ElementsAre(0.0f, 0.0f, 0.5f, 0.5f, 0.5f));
  for (std::size_t i = 0; i < 4; ++i) Member(i).readStatuses[1] = 6;
  EXPECT_EQ(summaryOf(multi).front(), 6.0f);
}

}  // namespace
}  // namespace orvel::test
