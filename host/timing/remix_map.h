#pragma once

#include <optional>
#include <vector>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"
#include "host/timing/duration_range.h"

namespace orvelhost {

/// The place in a clip where a bar begins, and how the music goes there.
struct BarLine {
  std::int64_t frame;
  std::vector<float> features;  ///< of the quarter beats around it
};

/// What of a clip of music a remix can be made from. Cheap to keep.
struct RemixMap {
  AudioFormat format;
  std::int64_t frameCount = 0;
  std::vector<BarLine> bars;  ///< rising
  int beatsPerBar = 4;
};

/// None when the clip has no steady beat or fewer than four bars: such a clip cannot be remixed.
/// Throws AudioError when reading fails, and Cancelled.
std::optional<RemixMap> MapForRemix(const AudioOpener& clip, const Progress& progress = {});

/// What PlanRemix can reach.
DurationRange RemixRange(const RemixMap& map);

}  // namespace orvelhost
