#pragma once

#include <cstdint>
#include <optional>

#include "host/analysis/audio_source.h"
#include "host/analysis/dynamics_levels.h"
#include "host/analysis/hum.h"
#include "host/analysis/progress.h"

namespace orvelhost {

/// What one pass over a clip tells about it. Levels are minus infinity for silence.
struct ClipAnalysis {
  AudioFormat format;
  std::int64_t frameCount = 0;
  double loudness = 0.0;       ///< integrated loudness in LUFS (EBU R 128, ITU-R BS.1770-4)
  double loudnessRange = 0.0;  ///< in LU (EBU Tech 3342); 0 for less than 3 seconds
  double truePeak = 0.0;       ///< the largest peak between samples in dBTP (BS.1770-4, Annex 2)
  double samplePeak = 0.0;     ///< the largest sample in dBFS
  double noiseFloor = 0.0;     ///< in dBFS; see NoiseFloorMeter
  std::optional<Hum> hum;      ///< none when the clip has no hum
  std::optional<DynamicsLevels> dynamics;  ///< none when the clip is silent

  /// In seconds.
  double Duration() const { return static_cast<double>(frameCount) / format.sampleRate; }
};

/// Reads the source to its end. Throws AudioError when reading fails, and Cancelled.
ClipAnalysis AnalyzeClip(AudioSource& source, const Progress& progress = {});

}  // namespace orvelhost
