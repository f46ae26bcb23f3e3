#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"
#include "host/timing/remix_map.h"

namespace orvelhost {

/// A stretch of the clip that is played as it is, from frame `begin` up to frame `end`.
struct RemixSegment {
  std::int64_t begin;
  std::int64_t end;
};

/// A new order for a clip's bars.
struct RemixPlan {
  std::vector<RemixSegment> segments;  ///< joined at bar lines, the joins aligned to the waves
  std::int64_t frameCount = 0;         ///< of the result; what the segments lack is stretched in
};

/// Looks for the joins that are heard least and bring the clip near to `duration` (seconds, moved
/// into RemixRange). `favorShortSegments` allows more joins, each a better one. The audio around
/// the joins is read to align them. Throws AudioError when reading fails, and Cancelled.
RemixPlan PlanRemix(const AudioOpener& clip, const RemixMap& map, double duration,
                    bool favorShortSegments, const Progress& progress = {});

/// The clip in the plan's order, with the joins crossfaded, of the plan's length. Throws AudioError
/// when reading fails, and Cancelled.
std::unique_ptr<AudioSource> Remix(const AudioOpener& clip, const RemixPlan& plan,
                                   const Progress& progress = {});

}  // namespace orvelhost
