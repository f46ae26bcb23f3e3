#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/definitions/parameter_mapping.h"
#include "orvel/definitions/parameter_modifier.h"

namespace orvel {

/// One control of a section: the audio effect that it drives, the switch that puts the effect into
/// the clip's chain, and the effect parameters that follow each model parameter.
class ORVEL_EXPORT ControlDefinition {
 public:
  /// From a model parameter's id to the effect parameters that follow it.
  using ParameterMap = std::map<std::int32_t, std::vector<ParameterMapping>>;

  /// A control that drives the effect `componentID`, switched by the parameter `enableParamID`,
  /// with no mappings yet. `controlKey` names it in documents.
  ControlDefinition(const std::u16string& componentID, int enableParamID,
                    const std::string& controlKey);

  /// The id of the model parameter that switches the effect on: from the middle of its range.
  int GetEnableParamID() const { return enableParamID_; }

  /// The effect; one of component_ids.h, or a host's own.
  const std::u16string& GetComponentID() const { return componentID_; }

  /// The control's name in documents.
  const std::string& GetControlKey() const { return controlKey_; }

  /// The effect's place in a clip's chain, smaller numbers first; -1 until set.
  int GetEffectOrderNumber() const { return effectOrderNumber_; }

  /// Any number but -1, which says that none is set.
  void SetEffectOrderNumber(int number) { effectOrderNumber_ = number; }

  /// Whether the effect is costly to run.
  bool GetCPUIntensive() const { return cpuIntensive_; }

  /// False until set.
  void SetCPUIntensive(bool intensive) { cpuIntensive_ = intensive; }

  /// All mappings.
  const ParameterMap& GetParameterMap() const { return parameterMap_; }

  /// The same, to be changed in place.
  ParameterMap& GetParameterMapRef() { return parameterMap_; }

  /// Adds an effect parameter behind those that follow `paramID` already.
  void AddParameterMapping(int paramID, const ParameterMapping& mapping);

  /// Empty when nothing follows `paramID`.
  std::vector<ParameterMapping> GetParameterMappings(int paramID) const;

  /// Adds a modifier behind those that are there. It bends nothing by itself: mappings have theirs
  /// by `ParameterMapping::SetModifier`.
  void AddParameterModifier(const ParameterModifier& modifier);

  /// Replaces what `modifiers` held by the control's modifiers, in the order added.
  void GetParameterModifiers(std::vector<ParameterModifier>& modifiers) const;

 private:
  friend class SectionDefinition;

  std::int32_t enableParamID_;
  std::u16string componentID_;
  std::int32_t effectOrderNumber_ = -1;
  ParameterMap parameterMap_;
  std::string controlKey_;
  std::vector<ParameterModifier> modifiers_;
  bool cpuIntensive_ = false;
};

}  // namespace orvel
