#pragma once

#include <memory>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"
#include "host/timing/duration_range.h"

namespace orvelhost {

/// From a quarter of the clip's duration to four times it, at most a day; {0, 0} for no audio.
DurationRange StretchRange(double duration);

/// The input at its pitch and of `frameCount` frames. The input is opened twice and first read as a
/// whole, which `progress` tells about; after that the result comes block by block in bounded
/// memory. Throws AudioError when reading fails, and Cancelled.
std::unique_ptr<AudioSource> Stretch(const AudioOpener& input, std::int64_t frameCount,
                                     const Progress& progress = {});

}  // namespace orvelhost
