#pragma once

#include <optional>

#include "host/analysis/audio_source.h"
#include "host/analysis/clip_analysis.h"
#include "host/analysis/noise_profile.h"
#include "host/analysis/progress.h"

namespace orvelhost {

/// What the sections and effects of a clip have to know of its sound.
struct ClipMeasurement {
  ClipAnalysis analysis;
  std::optional<NoiseProfile> noise;  ///< none when the clip has no steady noise
};

/// Reads the clip twice. Throws AudioError when reading fails, and Cancelled.
ClipMeasurement MeasureClip(const AudioOpener& audio, const Progress& progress = {});

}  // namespace orvelhost
