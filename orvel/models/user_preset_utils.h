#pragma once

#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/models/section_model_interface.h"

namespace orvel {

struct UserPresetData;

namespace modelutils {

/// Describes the values of a clip's section models as a user preset: the mode of the first, the
/// mode's current configuration, and the stored value list of every model that has a name. Gives 0,
/// or 5 as soon as a list cannot be read, with the lists before it in `data`. No models give 0 and
/// leave `data` as it was.
ORVEL_EXPORT int GetUserPresetData(
    const std::vector<boost::intrusive_ptr<SectionModelInterface>>& sectionModels,
    UserPresetData& data);

}  // namespace modelutils
}  // namespace orvel
