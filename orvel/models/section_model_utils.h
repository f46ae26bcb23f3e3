#pragma once

#include <map>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/models/section_model_interface.h"

namespace orvel::modelutils {

// The stored value list of a section holds one physical value for each parameter without
// `kParamFlag_NotStored`, in the order of the parameters.

/// Reads a model's values as such a list. Parameters with `kParamFlag_DefaultWhenOff` give their
/// default while the section is switched off. False, with `values` as it was, when a value cannot
/// be read.
ORVEL_EXPORT bool GetParamList(SectionModelInterface& model, std::vector<float>& values);

/// The same; false when there is no model.
ORVEL_EXPORT bool GetParamList(const boost::intrusive_ptr<SectionModelInterface>& model,
                               std::vector<float>& values);

/// Writes such a list in one step; one that is too short sets the leading parameters only. When the
/// write fails, or a value cannot be converted, what `GetParamList` gave before is written back,
/// once. In a section that is switched off, this puts the defaults in the place of the values of
/// parameters with `kParamFlag_DefaultWhenOff`, also when nothing had been set yet. True when the
/// values were set.
ORVEL_EXPORT bool SetParamList(const boost::intrusive_ptr<SectionModelInterface>& model,
                               const std::vector<float>& values);

/// Adds the normalized value of each listed parameter to `map`; entries that it has already stay.
/// False as soon as a value cannot be converted; its entry is added all the same.
ORVEL_EXPORT bool GetParamIdValueMap(const boost::intrusive_ptr<SectionModelInterface>& model,
                                     const std::vector<float>& values, std::map<int, float>& map);

/// Sets the normalized default of each stored parameter in `map`; 0 where a default cannot be
/// converted.
ORVEL_EXPORT void GetDefaultModelParams(const boost::intrusive_ptr<SectionModelInterface>& model,
                                        std::map<int, float>& map);

}  // namespace orvel::modelutils
