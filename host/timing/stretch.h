#pragma once

#include <memory>

#include "host/analysis/audio_source.h"
#include "host/timing/duration_range.h"

namespace orvelhost {

/// The durations that Stretch is good for: from a quarter of the clip's to four times it, at most a
/// day.
DurationRange StretchRange(double duration);

/// `input`, which gives `inputFrameCount` frames, at its pitch and with exactly `frameCount`
/// frames, block by block and in bounded memory. What an input lacks of its stated length is silent
/// at the end. Equal counts leave the samples as they are. Throws AudioError when reading fails.
std::unique_ptr<AudioSource> Stretch(std::unique_ptr<AudioSource> input,
                                     std::int64_t inputFrameCount, std::int64_t frameCount);

}  // namespace orvelhost
