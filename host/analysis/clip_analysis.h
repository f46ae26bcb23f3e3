#pragma once

#include <cstdint>
#include <optional>

#include "host/analysis/audio_source.h"
#include "host/analysis/dynamics_levels.h"
#include "host/analysis/hum.h"
#include "host/analysis/noise_floor.h"
#include "host/analysis/progress.h"
#include "host/audio/level_meter.h"

namespace orvelhost {

/// What one pass over a clip tells about it. Levels are minus infinity for silence.
struct ClipAnalysis {
  AudioFormat format;
  std::int64_t frameCount = 0;
  double loudness = 0.0;        ///< integrated loudness in LUFS (EBU R 128, ITU-R BS.1770-4)
  double loudnessRange = 0.0;   ///< in LU (EBU Tech 3342); 0 for less than 3 seconds
  double truePeak = 0.0;        ///< the largest peak between samples in dBTP (BS.1770-4, Annex 2)
  double samplePeak = 0.0;      ///< the largest sample in dBFS
  std::optional<double> width;  ///< side over mid in dB, see Levels; none when not stereo
  double noiseFloor = 0.0;      ///< in dBFS; see NoiseFloorMeter; NaN when nobody measured it
  std::optional<Hum> hum;       ///< none when the clip has no hum, or nobody looked for it
  std::optional<DynamicsLevels> dynamics;  ///< none when the clip is silent

  /// In seconds.
  double Duration() const { return static_cast<double>(frameCount) / format.sampleRate; }
};

/// How much of a ClipAnalysis is worth its time.
enum class AnalysisDetail {
  kLevels,  ///< loudness, its range, peaks and width; the rest is not measured
  kAll,
};

/// Measures a clip block by block.
class ClipMeter {
 public:
  explicit ClipMeter(const AudioFormat& format, AnalysisDetail detail = AnalysisDetail::kAll);

  /// Takes a block of the meter's format.
  void Add(const AudioBlock& block);

  /// What was measured of all blocks together.
  ClipAnalysis Measure() const;

 private:
  struct Finders {
    NoiseFloorMeter noiseFloor;
    HumFinder hum;
    DynamicsMeter dynamics;
  };

  AudioFormat format_;
  std::int64_t frameCount_ = 0;
  LevelMeter levels_;
  std::optional<Finders> finders_;
};

/// Reads the source to its end. Throws AudioError when reading fails, and Cancelled.
ClipAnalysis AnalyzeClip(AudioSource& source, const Progress& progress = {});

}  // namespace orvelhost
