#pragma once

#include <cstdint>
#include <string>

#include "orvel/core/export.h"

namespace orvel {

/// What `ParamDefinition::flags` says of a parameter. The library acts on `kParamFlag_NotStored`
/// and `kParamFlag_DefaultWhenOff`; the other names describe a parameter to whoever shows it, and
/// nothing in the library reads them.
enum ParamFlags : std::uint32_t {
  kParamFlag_None = 0,             ///< none of these
  kParamFlag_Stepped = 1,          ///< takes single values only, not every value of its range
  kParamFlag_TwoValued = 2,        ///< takes the two ends of its range only
  kParamFlag_ListEntry = 4,        ///< chooses an entry of a list that the configuration holds
  kParamFlag_NotStored = 8,        ///< left out of a section's stored value list
  kParamFlag_Trigger = 16,         ///< setting it makes the model do something once
  kParamFlag_RangeVaries = 32,     ///< its range depends on the configuration or the clip
  kParamFlag_DefaultWhenOff = 64,  ///< stored as its default while the section is switched off
  kParamFlag_Switch = kParamFlag_Stepped | kParamFlag_TwoValued,  ///< on or off
};

/// One parameter of a section's model. Ids run 0, 1, 2 ... in the order of the section's list; 0
/// switches the section on.
struct ORVEL_EXPORT ParamDefinition {
  /// The definition that a lookup gives when it finds nothing.
  ParamDefinition();

  /// Each field as it is given; nothing is checked.
  ParamDefinition(int id, float defaultValue, float minValue, float maxValue, std::uint32_t flags,
                  const std::string& name, const std::string& description, const std::string& key);

  /// Whether any bit of `flag` is set.
  bool HasFlag(ParamFlags flag) const { return (flags & flag) != 0; }

  std::int32_t id;          ///< its place in the section's list
  float defaultValue;       ///< physical, like the range
  float minValue;           ///< where the normalized value is 0
  float maxValue;           ///< where the normalized value is 1
  std::uint32_t flags;      ///< of ParamFlags
  std::string name;         ///< in English, for whoever shows it
  std::string description;  ///< a sentence in English
  std::string key;          ///< its name in documents
};

}  // namespace orvel
