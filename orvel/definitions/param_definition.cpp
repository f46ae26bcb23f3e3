#include "orvel/definitions/param_definition.h"

namespace orvel {

ParamDefinition::ParamDefinition()
    : ParamDefinition(0, 0.0f, 0.0f, 0.0f, kParamFlag_None, "invalid_param", "invalid param",
                      "INVALID_PARAM") {}

ParamDefinition::ParamDefinition(int newId, float newDefault, float newMin, float newMax,
                                 std::uint32_t newFlags, const std::string& newName,
                                 const std::string& newDescription, const std::string& newKey)
    : id(newId),
      defaultValue(newDefault),
      minValue(newMin),
      maxValue(newMax),
      flags(newFlags),
      name(newName),
      description(newDescription),
      key(newKey) {}

}  // namespace orvel
