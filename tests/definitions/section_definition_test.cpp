#include "orvel/definitions/section_definition.h"

#include <utility>

#include <gtest/gtest.h>

namespace orvel {
namespace {

constexpr int kSwitchID = 0;
constexpr int kSharedID = 5;
const std::vector<ParamDefinition> kParams = {
    {kSwitchID, 1, 0, 1, kParamFlag_Switch, "Enabled", "Enables it", "ENABLED"}};

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
    SectionDefinition section("model", u"Name", {}, kParams, c.controls, "Key");
    EXPECT_EQ(section.GetParamTypeAndControl(c.paramID, nullptr), c.type);
    EXPECT_EQ(std::as_const(section).GetParamTypeAndControl(c.paramID, nullptr), c.type);
    ControlDefinition untouched(u"", 0, "untouched");
    ControlDefinition* control = &untouched;
    EXPECT_EQ(section.GetParamTypeAndControl(c.paramID, &control), c.type);
    EXPECT_EQ(control->GetControlKey(), c.control);
  }
}

TEST(SectionDefinition, WithoutParametersHasAnInvalidSwitch) {
  const SectionDefinition empty;
  EXPECT_EQ(empty.GetEnableParam().key, "INVALID_PARAM");
  EXPECT_EQ(empty.GetParamTypeAndControl(0, static_cast<const ControlDefinition**>(nullptr)),
            kSectionEnable);
}

}  // namespace
}  // namespace orvel
