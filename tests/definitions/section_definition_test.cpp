#include "orvel/definitions/section_definition.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

constexpr int kSwitchID = 0;
constexpr int kSharedID = 5;

std::vector<ParamDefinition> OneParam() {
  return {{kSwitchID, 1, 0, 1, kParamFlag_Switch, "Enabled", "Enables it", "ENABLED"}};
}

ControlDefinition Mapping(const char* key, int paramID) {
  ControlDefinition control(u"effect", 1, key);
  control.AddParameterMapping(paramID, ParameterMapping(0, 0.0f, 1.0f, 1.0f));
  return control;
}

ControlDefinition Modifying(const char* key, int paramID) {
  ControlDefinition control(u"effect", 2, key);
  control.AddParameterModifier(ParameterModifier(paramID, {}, {}));
  return control;
}

struct Role {
  ParamType type;
  std::string control;
};

Role GetRole(const std::vector<ControlDefinition>& controls, int paramID) {
  const SectionDefinition section("model", u"Name", {}, OneParam(), controls, "Key");
  const ControlDefinition untouched(u"", 0, "untouched");
  const ControlDefinition* control = &untouched;
  const ParamType type = section.GetParamTypeAndControl(paramID, &control);
  SectionDefinition copy = section;
  EXPECT_EQ(copy.GetParamTypeAndControl(paramID, nullptr), type);
  EXPECT_EQ(section.GetParamTypeAndControl(paramID, nullptr), type);
  return {type, control->GetControlKey()};
}

TEST(SectionDefinition, GivesAParameterItsRoleAndControl) {
  const auto a = Mapping("A", kSharedID);
  const auto mapsToo = Mapping("B", kSharedID);
  const auto modifies = Modifying("B", kSharedID);
  auto both = Mapping("C", kSharedID);
  both.AddParameterModifier(ParameterModifier(kSharedID, {}, {}));
  const struct {
    std::vector<ControlDefinition> controls;
    int paramID;
    ParamType type;
    const char* control;
  } cases[] = {
      {{a}, kSwitchID, kSectionEnable, "untouched"},
      {{}, kSharedID, kUnknownParam, "untouched"},
      {{a}, 77, kUnknownParam, "untouched"},
      {{a, mapsToo}, 1, kControlEnable, "A"},  // a switch is found at once, the first that has it
      {{a}, kSharedID, kMappedParam, "A"},
      {{a, mapsToo}, kSharedID, kMappedParam, "B"},  // a later control that claims the id wins
      {{a, modifies}, kSharedID, kModifierParam, "B"},
      {{modifies, a}, kSharedID, kMappedParam, "A"},
      {{both}, kSharedID, kModifierParam, "C"},
  };
  for (const auto& c : cases) {
    const Role role = GetRole(c.controls, c.paramID);
    EXPECT_EQ(role.type, c.type);
    EXPECT_EQ(role.control, c.control);
  }
}

TEST(SectionDefinition, PointsIntoItsOwnListSoThatAControlCanBeChanged) {
  SectionDefinition section("model", u"Name", {}, OneParam(), {Mapping("A", 5)}, "Key");
  ControlDefinition* control = nullptr;
  EXPECT_EQ(section.GetParamTypeAndControl(5, &control), kMappedParam);
  control->SetEffectOrderNumber(60);
  EXPECT_EQ(section.GetControlDefinitions().front().GetEffectOrderNumber(), 60);
}

TEST(SectionDefinition, WithoutParametersHasAnInvalidSwitch) {
  const SectionDefinition empty;
  EXPECT_EQ(empty.GetEnableParam().key, "INVALID_PARAM");
  EXPECT_EQ(empty.GetEnableParam().name, "invalid_param");
  EXPECT_EQ(empty.GetEnableParam().description, "invalid param");
  const ControlDefinition* control = nullptr;
  EXPECT_EQ(empty.GetParamTypeAndControl(0, &control), kSectionEnable);
  EXPECT_EQ(empty.GetParamTypeAndControl(1, &control), kUnknownParam);
}

TEST(ControlDefinition, KeepsMappingsPerParameterInTheOrderAdded) {
  ControlDefinition control(u"effect", 1, "Key");
  EXPECT_EQ(control.GetEffectOrderNumber(), -1);
  EXPECT_FALSE(control.GetCPUIntensive());
  EXPECT_TRUE(control.GetParameterMappings(9).empty());
  EXPECT_TRUE(control.GetParameterMap().empty());  // asking adds nothing
  control.AddParameterMapping(2, ParameterMapping(1, 0.0f, 1.0f, 1.0f));
  control.AddParameterMapping(2, ParameterMapping(0, 0.5f, 1.0f));
  const auto mappings = control.GetParameterMappings(2);
  ASSERT_EQ(mappings.size(), 2u);
  EXPECT_TRUE(mappings[0].IsIndex(1));
  EXPECT_TRUE(mappings[1].IsIndex(0));
  control.AddParameterModifier(ParameterModifier(7, {}, {}));
  std::vector<ParameterModifier> modifiers(3);
  control.GetParameterModifiers(modifiers);
  ASSERT_EQ(modifiers.size(), 1u);
  EXPECT_EQ(modifiers[0].GetParamID(), 7);
}

}  // namespace
}  // namespace orvel
