#include "orvel/definitions/control_definition.h"

namespace orvel {

ControlDefinition::ControlDefinition(const std::u16string& componentID, int enableParamID,
                                     const std::string& controlKey)
    : enableParamID_(enableParamID), componentID_(componentID), controlKey_(controlKey) {}

void ControlDefinition::AddParameterMapping(int paramID, const ParameterMapping& mapping) {
  parameterMap_[paramID].push_back(mapping);
}

std::vector<ParameterMapping> ControlDefinition::GetParameterMappings(int paramID) const {
  const auto found = parameterMap_.find(paramID);
  return found == parameterMap_.end() ? std::vector<ParameterMapping>() : found->second;
}

void ControlDefinition::AddParameterModifier(const ParameterModifier& modifier) {
  modifiers_.push_back(modifier);
}

void ControlDefinition::GetParameterModifiers(std::vector<ParameterModifier>& modifiers) const {
  modifiers = modifiers_;
}

}  // namespace orvel
