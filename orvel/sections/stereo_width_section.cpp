#include "orvel/sections/stereo_width_section.h"

#include "orvel/core/component_ids.h"
#include "orvel/core/localizer.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {

const std::u16string& SectionStereoWidthConfig::GetStereoWidthComponentID() {
  return kStereoExpanderID;
}

namespace {

constexpr char kModelID[] = "model_stereowidth";

// A third of the slider: there the expander leaves the width as it is.
constexpr float kUnchangedWidth = 10.0f / 3.0f;

}  // namespace

// clang-format off
const std::vector<ParamDefinition> SectionModelStereoWidthParams::sParamDefinitions = {
  // id                 default          min   max    flags              name                 description                         key
  { kEnabled,           1.0f,            0.0f,  1.0f, kParamFlag_Switch, "Enabled",           "Enables the Stereo Width Section", "STEREO_WIDTH_ENABLED"             },
  { kEnableStereoWidth, 0.0f,            0.0f,  1.0f, kParamFlag_Switch, "EnableStereoWidth", "Enables Stereo Width Control",     "STEREO_WIDTH_ENABLE_STEREO_WIDTH" },
  { kAdjustStereoWidth, kUnchangedWidth, 0.0f, 10.0f, kParamFlag_None,   "AdjustStereoWidth", "Controls Amount of Stereo Width",  "STEREO_WIDTH_AMOUNT"              },
};
// clang-format on

namespace {

// The stereo expander's parameters, both on a scale of 0..1.
enum ExpanderParam : unsigned { kCentre = 0, kWidth = 1 };
constexpr float kCentreInTheMiddle = 0.5f;

constexpr int kEffectOrder = 60;

SectionDefinition BuildStereoWidthSection(const PropList& configuration) {
  ControlDefinition control(SectionStereoWidthConfig::GetStereoWidthComponentID(),
                            SectionModelStereoWidthParams::kEnableStereoWidth, "StereoWidth");
  control.SetEffectOrderNumber(kEffectOrder);
  control.AddParameterMapping(SectionModelStereoWidthParams::kAdjustStereoWidth,
                              ParameterMapping(kCentre, kCentreInTheMiddle, 1.0f));
  control.AddParameterMapping(SectionModelStereoWidthParams::kAdjustStereoWidth,
                              ParameterMapping(kWidth, 0.0f, 1.0f, 1.0f));

  return {kModelID,      ZString("$$$/orvel/Sections/StereoWidth=Stereo Width"),
          configuration, SectionModelStereoWidthParams::sParamDefinitions,
          {control},     "StereoWidthSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildStereoWidthSection);

}  // namespace
}  // namespace orvel
