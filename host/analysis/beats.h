#pragma once

#include <optional>
#include <vector>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"

namespace orvelhost {

/// The beats of a clip of music.
struct Beats {
  std::vector<double> times;  ///< in seconds, rising, evenly laid; at least eight
  double tempo;               ///< beats per minute, over the whole clip
};

/// Follows the beat of a source and straightens what it finds. None when there is no steady beat:
/// speech, noise, silence, less than four seconds. Throws AudioError when reading fails, and
/// Cancelled.
std::optional<Beats> FindBeats(AudioSource& source, const Progress& progress = {});

}  // namespace orvelhost
