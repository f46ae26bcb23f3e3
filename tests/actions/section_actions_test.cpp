#include <algorithm>

#include <gmock/gmock.h>

#include "orvel/actions/action_types.h"
#include "orvel/actions/offset_model_param_action.h"
#include "orvel/actions/set_model_param_action.h"
#include "orvel/actions/set_model_param_map_action.h"
#include "orvel/actions/suspend_signaling_action.h"
#include "orvel/core/profiler.h"
#include "tests/support/fake_session.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

const std::vector<ParamDefinition> kParams = {
    {0, 1.0f, 0.0f, 1.0f, kParamFlag_Switch, "Enabled", "", "ON"},
    {1, 0.0f, 0.0f, 1.0f, kParamFlag_None, "Amount", "", "AMOUNT"},
};

class SectionActions : public ::testing::Test {
 protected:
  SectionActions() {
    for (int i = 0; i < 3; ++i) multi->AddModel(new FakeSectionModel(kParams));
    for (const auto& member : multi->GetModels()) {
      members.push_back(dynamic_cast<FakeSectionModel*>(member.get()));
      members.back()->values[1] = 0.2f * static_cast<float>(members.size());
    }
    multi->RegisterForModelChanges(
        [this](int id, float value) { signals.emplace_back(id, value); });
  }
  std::vector<float> Values() const {
    return {members[0]->values[1], members[1]->values[1], members[2]->values[1]};
  }
  static std::vector<boost::intrusive_ptr<Action>> Children(
      const boost::intrusive_ptr<Action>& action) {
    const auto& compound = dynamic_cast<const MultiAction&>(*action);
    return {compound.begin(), compound.end()};
  }

  boost::intrusive_ptr<SectionMultiModel> multi{new SectionMultiModel("dialog")};
  std::vector<FakeSectionModel*> members;
  std::vector<std::pair<int, float>> signals;
  boost::intrusive_ptr<FakeExecutor> stack{new FakeExecutor};
  const std::vector<float> before{0.2f, 0.4f, 0.2f * 3.0f};
};

TEST_F(SectionActions, AControlOfSeveralClipsIsOneStepWithOneSignalAndEachClipsOwnWayBack) {
  const auto action = CreateSetModelParamAction(multi, 1, 0.5f, u"Change Amount");
  EXPECT_EQ(action->GetActionType(), kActionType_SetSectionModelParam);
  EXPECT_EQ(action->GetActionString(), u"Change Amount");
  ASSERT_EQ(Children(action).size(), 5u);
  EXPECT_EQ(Children(action)[0]->GetActionType(), u"");  // a bracket
  // Several parameters at once are written without brackets.
  EXPECT_EQ(Children(CreateSetModelParamMapAction(multi, {{1, 0.5f}}, u"")).size(), 3u);
  EXPECT_EQ(Children(action)[1]->GetActionType(), kActionType_SetSectionModelParam);
  stack->Execute(action);
  EXPECT_THAT(Values(), ElementsAre(0.5f, 0.5f, 0.5f));
  EXPECT_THAT(signals, ElementsAre(Pair(1, 0.5f)));
  stack->Undo();
  EXPECT_EQ(Values(), before);
  EXPECT_EQ(signals.size(), 2u);
  stack->Redo();
  EXPECT_THAT(Values(), ElementsAre(0.5f, 0.5f, 0.5f));
}

TEST_F(SectionActions, ADragIsOneStepThatLeadsBackToWhereItBegan) {
  for (const bool isOffset : {false, true}) {
    for (const bool several : {true, false}) {
      const boost::intrusive_ptr<SectionModelInterface> model(
          several ? static_cast<SectionModelInterface*>(multi.get()) : members[0]);
      const auto action = isOffset ? CreateOffsetModelParamAction(model, 1, 0.1f, u"")
                                   : CreateSetModelParamAction(model, 1, 0.1f, u"");
      EXPECT_EQ(action->GetActionType(), kActionType_SetSectionModelParam);
      if (isOffset) ChangeActionParamValue(action, std::nanf(""));  // no place to go to
      for (const float value : {0.1f, 1.0f, -0.9f, 0.25f}) {
        ChangeActionParamValue(action, value);
        stack->Execute(action);
        const float moved = isOffset ? std::clamp(before[0] + value, 0.0f, 1.0f) : value;
        EXPECT_EQ(Values()[0], moved);
      }
      // Offset clips that met at an end stand as far apart as before.
      EXPECT_EQ(Values()[0], isOffset ? before[0] + 0.25f : 0.25f);
      const float last = isOffset ? before[2] + 0.25f : 0.25f;
      EXPECT_EQ(Values()[2], several ? last : before[2]);
      EXPECT_EQ(stack->done, 1u);
      stack->Undo();
      EXPECT_EQ(Values(), before);
    }
  }
}

TEST_F(SectionActions, WhatCannotBeReadIsZeroOnUndoAndIsNotMovedByAnOffset) {
  members[1]->readStatuses[1] = 6;
  stack->Execute(CreateOffsetModelParamAction(multi, 1, 0.1f, u""));
  stack->Undo();
  EXPECT_EQ(members[1]->writes, 0);
  for (const auto& action : {CreateSetModelParamAction(multi, 1, 0.5f, u""),
                             CreateSetModelParamMapAction(multi, {{1, 0.5f}}, u"")}) {
    stack->Execute(action);
    stack->Undo();
    EXPECT_EQ(Values()[1], 0.0f);
  }
}

TEST_F(SectionActions, DoNothingWithoutAModel) {
  for (const auto& action : {CreateSetModelParamAction(nullptr, 1, 0.5f, u""),
                             CreateSetModelParamMapAction(nullptr, {{1, 0.5f}}, u""),
                             CreateOffsetModelParamAction(nullptr, 1, 0.5f, u""),
                             CreateSuspendSignalingAction(nullptr, true, u"")}) {
    action->Redo();
    action->Undo();
  }
  ChangeActionParamValue(nullptr, 0.5f);
}

TEST_F(SectionActions, OpenAProfilerScopeForEachStepWhileProfilingIsOn) {
  using teskcore::debug::CodeProfilerManager;
  std::vector<std::string> names;
  CodeProfilerManager::Get().SetSink([&](const auto& log, auto) { names.push_back(log.name); });
  const auto set = CreateSetModelParamAction(members[0], 1, 0.5f, u"");
  const auto map = CreateSetModelParamMapAction(members[0], {{1, 0.5f}}, u"");
  CodeProfilerManager::Get().SetConditionalProfiling(true);
  set->Redo();
  map->Redo();
  map->Undo();
  CodeProfilerManager::Get().SetConditionalProfiling(false);
  CodeProfilerManager::Get().SetSink({});
  EXPECT_THAT(names, ElementsAre("SetSectionModelParamAction::RedoSelf",
                                 "SetSectionModelParamMapAction::RedoSelf",
                                 "SetSectionModelParamMapAction::UndoSelf"));
}

}  // namespace
}  // namespace orvel::test
