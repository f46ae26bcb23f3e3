#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "host/analysis/analysis_cache.h"
#include "host/analysis/audio_source.h"
#include "host/analysis/clip_analysis.h"
#include "host/analysis/noise_profile.h"
#include "host/analysis/progress.h"
#include "host/effects/effect_context.h"
#include "host/timing/remix_map.h"

namespace orvelhost {

/// What the sections and effects of a clip have to know of its sound.
struct ClipMeasurement {
  ClipAnalysis analysis;
  std::optional<NoiseProfile> noise;  ///< none when the clip has no steady noise
  bool isMapped = false;              ///< whether `remix` was looked for
  /// Null when the clip cannot be remixed. Shared, for it is large.
  std::shared_ptr<const RemixMap> remix;
};

/// What a clip's effects have to know of it.
EffectContext ContextOf(const AudioFormat& format,
                        const std::optional<ClipMeasurement>& measurement);

/// Reads the clip twice, and a third time to map it for a remix. Throws AudioError when reading
/// fails, and Cancelled.
ClipMeasurement MeasureClip(const AudioOpener& audio, bool withRemix,
                            const Progress& progress = {});

/// The same of a file. The cache keeps what each pass found, and saves the pass where it knows the
/// content already.
ClipMeasurement MeasureFile(const std::filesystem::path& path, bool withRemix, AnalysisCache& cache,
                            const Progress& progress = {});

}  // namespace orvelhost
