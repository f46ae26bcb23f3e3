#include "orvel/sections/pan_section.h"

#include "orvel/core/localizer.h"
#include "orvel/definitions/section_registry.h"

namespace orvel {

// clang-format off
const std::vector<ParamDefinition> SectionModelPanParams::sParamDefinitions = {
  // id               default  min    max   flags                                       name               description                      key
  { kEnabled,         1.0f,     0.0f, 1.0f, kParamFlag_Switch,                          "Enabled",         "Enables the Pan Section",       "PAN_ENABLED"           },
  { kPan,             0.0f,    -5.0f, 5.0f, kParamFlag_None,                            "Pan",             "Controls Pan Amount",           "PAN_AMOUNT"            },
  { kPanNotSupported, 0.0f,     0.0f, 1.0f, kParamFlag_Switch | kParamFlag_NotStored,   "PanNotSupported", "Indicates if Pan is supported", "PAN_PAN_NOT_SUPPORTED" },
};
// clang-format on

namespace {

constexpr char kModelID[] = "model_pan";

SectionDefinition BuildPanSection(const PropList& configuration) {
  return {kModelID,
          ZString("$$$/orvel/Sections/Pan=Pan"),
          configuration,
          SectionModelPanParams::sParamDefinitions,
          {},
          "PanSection"};
}

[[maybe_unused]] const bool registered =
    factory::RegisterModelDefinition(kModelID, BuildPanSection);

}  // namespace
}  // namespace orvel
