#pragma once

#include <cstdint>
#include <string>

#include "orvel/core/export.h"

namespace orvel {

/// What `ParamDefinition::flags` says of a parameter. The library acts on `kParamFlag_NotStored`
/// and `kParamFlag_DefaultWhenOff`; the other names describe a parameter to whoever shows it, and
/// nothing in the library reads them.
enum ParamFlags : std::uint32_t {
  kParamFlag_None = 0,
  kParamFlag_Stepped = 1,          ///< takes single values only, not every value of its range
  kParamFlag_TwoValued = 2,        ///< takes the two ends of its range only
  kParamFlag_ListEntry = 4,        ///< chooses an entry of a list that the configuration holds
  kParamFlag_NotStored = 8,        ///< left out of a section's stored value list
  kParamFlag_Trigger = 16,         ///< setting it makes the model do something once
  kParamFlag_RangeVaries = 32,     ///< its range depends on the configuration or the clip
  kParamFlag_DefaultWhenOff = 64,  ///< stored as its default while the section is switched off
  kParamFlag_Switch = kParamFlag_Stepped | kParamFlag_TwoValued,
};

/// One parameter of a section's model. Ids run 0, 1, 2 ... in the order of the section's list; 0
/// switches the section on.
struct ORVEL_EXPORT ParamDefinition {
  /// The definition that a lookup gives when it finds nothing.
  ParamDefinition();
  ParamDefinition(int id, float defaultValue, float minValue, float maxValue, std::uint32_t flags,
                  const std::string& name, const std::string& description, const std::string& key);

  bool HasFlag(ParamFlags flag) const { return (flags & flag) != 0; }

  std::int32_t id;
  float defaultValue;  ///< physical, like the range
  float minValue;
  float maxValue;
  std::uint32_t flags;  ///< of ParamFlags
  std::string name;
  std::string description;
  std::string key;
};

}  // namespace orvel
