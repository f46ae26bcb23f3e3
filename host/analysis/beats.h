#pragma once

#include <optional>
#include <vector>

#include "host/analysis/music_features.h"

namespace orvelhost {

/// The beats of a clip of music.
struct Beats {
  std::vector<double>
      times;     ///< in seconds, rising, from the clip's begin to its end; eight or more
  double tempo;  ///< beats per minute, over the whole clip
};

/// Straightens the beats that were followed: each is moved onto the line through its neighbours,
/// gaps are filled, and the grid is led on to both ends of the clip. None when there is no steady
/// beat, as in speech, noise and silence, or when fewer than eight beats were heard.
std::optional<Beats> StraightenBeats(const MusicFeatures& features);

}  // namespace orvelhost
