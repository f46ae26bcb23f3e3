#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"
#include "host/timing/duration_range.h"

namespace orvelhost {

/// A leap from the end of one bar to the begin of another.
struct RemixJoin {
  int exit;    ///< the bar line where the clip is left
  int entry;   ///< the bar line where it goes on
  float cost;  ///< how differently the bars on either side sound; 0 when they are the same
};

/// What of a clip of music a remix can be made from. Takes less than a kilobyte a bar.
struct RemixMap {
  AudioFormat format;
  std::int64_t frameCount = 0;
  int beatsPerBar = 4;
  std::vector<std::int64_t> barLines;         ///< frames, rising; five or more
  std::vector<std::vector<RemixJoin>> joins;  ///< into each bar line, the cheapest first
};

/// None for a clip that cannot be remixed: it has no steady beat, or fewer than four bars, or more
/// than 5000, which is over two hours. Throws AudioError when reading fails, and Cancelled.
std::optional<RemixMap> MapForRemix(AudioSource& clip, const Progress& progress = {});

/// The durations that PlanRemix is good for: from what comes before the first bar and after the
/// last with a few bars between them, to four times the clip's, at most a day.
DurationRange RemixRange(const RemixMap& map);

/// Away from the clip's ends and other joins, a join keeps at least this many bars, so that ears
/// can settle; one bar suffices when short segments are favoured.
int LeastBarsBetweenJoins(const RemixMap& map, bool favorShortSegments);

}  // namespace orvelhost
