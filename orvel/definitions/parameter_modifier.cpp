#include "orvel/definitions/parameter_modifier.h"

namespace orvel {

ParameterModifier::ParameterModifier(int paramID, const Function& modify, const Function& invert)
    : modify_(modify), invert_(invert), paramID_(paramID) {}

}  // namespace orvel
