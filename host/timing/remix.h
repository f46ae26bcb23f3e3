#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"
#include "host/timing/remix_map.h"

namespace orvelhost {

/// A stretch of the clip that is played as it is.
struct RemixSegment {
  std::int64_t begin;  ///< the first frame
  std::int64_t end;    ///< the frame behind the last
  /// Of the audio at its begin with what the segment before would have gone on with, -1..1.
  double correlation = 0.0;
};

/// A new order for a clip's bars.
struct RemixPlan {
  /// The joins lie shortly before bar lines, so that what begins on the bar is heard as a whole.
  std::vector<RemixSegment> segments;
  /// Of the result, within 20 ms of what was asked. What the segments lack for that, half a bar at
  /// most as a rule, is spread by stretching all of them a little.
  std::int64_t frameCount = 0;
};

/// Looks for the joins that are heard least and bring the clip near to `duration` (seconds, moved
/// into RemixRange). `favorShortSegments` makes joins cheaper and lets them follow each other by a
/// bar. The audio around the joins is read to align their waves. Throws AudioError when reading
/// fails, and Cancelled.
RemixPlan PlanRemix(const AudioOpener& clip, const RemixMap& map, double duration,
                    bool favorShortSegments, const Progress& progress = {});

/// The clip in the plan's order, with the joins crossfaded, block by block and in bounded memory.
std::unique_ptr<AudioSource> Remix(const AudioOpener& clip, const RemixPlan& plan);

}  // namespace orvelhost
