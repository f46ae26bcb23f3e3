#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvel/core/export.h"
#include "orvel/core/prop_list.h"
#include "orvel/definitions/control_definition.h"
#include "orvel/definitions/param_definition.h"

namespace orvel {

/// The role of a model parameter inside its section.
enum ParamType : std::int32_t {
  kSectionEnable = 0,  ///< switches the section
  kControlEnable = 1,  ///< switches one control
  kMappedParam = 2,    ///< a control maps it onto effect parameters
  kModifierParam = 3,  ///< the argument of a control's modifier
  kUnknownParam = 4,   ///< none of these
};

/// One section of the panel: its identity, the configuration that it was built from, its parameters
/// and its controls.
class ORVEL_EXPORT SectionDefinition {
 public:
  /// Without a name, parameters and controls.
  SectionDefinition() = default;

  /// Each field as it is given; nothing is checked.
  SectionDefinition(const std::string& modelID, const std::u16string& localizedName,
                    const PropList& configuration,
                    const std::vector<ParamDefinition>& paramDefinitions,
                    const std::vector<ControlDefinition>& controlDefinitions,
                    const std::string& sectionKey);

  /// The section's id, such as "model_volume".
  const std::string& GetModelID() const { return modelID_; }

  /// The title to show.
  const std::u16string& GetLocalizedName() const { return localizedName_; }

  /// What the definition was built from.
  const PropList& GetConfiguration() const { return configuration_; }

  /// The parameters; the id of each is its place.
  const std::vector<ParamDefinition>& GetParamDefinitions() const { return paramDefinitions_; }

  /// The controls; each drives one effect.
  const std::vector<ControlDefinition>& GetControlDefinitions() const {
    return controlDefinitions_;
  }

  /// The same, to be changed in place.
  std::vector<ControlDefinition>& GetControlDefinitionsRef() { return controlDefinitions_; }

  /// The section's name in documents.
  const std::string& GetSectionKey() const { return sectionKey_; }

  /// The section's switch: the first parameter, or a default-built definition when there is none.
  ParamDefinition GetEnableParam() const;

  /// The role of `paramID`. For the roles of a control, `*control` then points at it, inside this
  /// definition's list; otherwise it stays as it was. `control` may be null. Of several controls
  /// that map an id or take it as a modifier's argument, the last one counts; a control that it
  /// switches counts at once.
  ParamType GetParamTypeAndControl(int paramID, const ControlDefinition** control) const;

  /// The same, for a control that is to be changed.
  ParamType GetParamTypeAndControl(int paramID, ControlDefinition** control);

 private:
  std::string modelID_;
  std::u16string localizedName_;
  PropList configuration_;
  std::vector<ParamDefinition> paramDefinitions_;
  std::vector<ControlDefinition> controlDefinitions_;
  std::string sectionKey_;
};

}  // namespace orvel
