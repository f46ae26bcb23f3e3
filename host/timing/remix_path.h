#pragma once

#include <vector>

#include "host/timing/remix_map.h"

namespace orvelhost {

/// The joins, in the order in which they are taken, that bring the clip nearest to `frameCount`
/// frames at the least cost. None when the clip as it is comes nearest.
std::vector<RemixJoin> FindRemixPath(const RemixMap& map, std::int64_t frameCount,
                                     bool favorShortSegments);

}  // namespace orvelhost
