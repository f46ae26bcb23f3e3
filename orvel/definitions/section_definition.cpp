#include "orvel/definitions/section_definition.h"

#include <algorithm>
#include <cstddef>

namespace orvel {

SectionDefinition::SectionDefinition(const std::string& modelID,
                                     const std::u16string& localizedName,
                                     const PropList& configuration,
                                     const std::vector<ParamDefinition>& paramDefinitions,
                                     const std::vector<ControlDefinition>& controlDefinitions,
                                     const std::string& sectionKey)
    : modelID_(modelID),
      localizedName_(localizedName),
      configuration_(configuration),
      paramDefinitions_(paramDefinitions),
      controlDefinitions_(controlDefinitions),
      sectionKey_(sectionKey) {}

ParamDefinition SectionDefinition::GetEnableParam() const {
  return paramDefinitions_.empty() ? ParamDefinition() : paramDefinitions_.front();
}

ParamType SectionDefinition::GetParamTypeAndControl(int paramID,
                                                    const ControlDefinition** control) const {
  const int enableID =
      paramDefinitions_.empty() ? ParamDefinition().id : paramDefinitions_.front().id;
  if (paramID == enableID) return kSectionEnable;
  const ControlDefinition* unwanted = nullptr;
  if (control == nullptr) control = &unwanted;
  ParamType type = kUnknownParam;
  for (const ControlDefinition& candidate : controlDefinitions_) {
    if (candidate.enableParamID_ == paramID) {
      *control = &candidate;
      return kControlEnable;
    }
    const bool mapped = candidate.parameterMap_.contains(paramID);
    const auto& modifiers = candidate.modifiers_;
    const bool modifies =
        std::any_of(modifiers.begin(), modifiers.end(),
                    [paramID](const ParameterModifier& m) { return m.GetParamID() == paramID; });
    if (mapped || modifies) {
      type = modifies ? kModifierParam : kMappedParam;
      *control = &candidate;  // a later control that claims the id wins over this one
    }
  }
  return type;
}

ParamType SectionDefinition::GetParamTypeAndControl(int paramID, ControlDefinition** control) {
  const ControlDefinition* found = nullptr;
  const ParamType type =
      static_cast<const SectionDefinition&>(*this).GetParamTypeAndControl(paramID, &found);
  if (found != nullptr && control != nullptr)
    *control = &controlDefinitions_[static_cast<std::size_t>(found - controlDefinitions_.data())];
  return type;
}

}  // namespace orvel
