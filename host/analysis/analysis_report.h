#pragma once

#include <array>
#include <string>

#include "host/analysis/clip_analysis.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// One number of an analysis, as all reports name it.
struct Figure {
  const char* key;  ///< in JSON
  const char* name;
  const char* unit;
  double value;  ///< not finite when there is none

  /// "Loudness, LUFS".
  std::string Label() const { return std::string(name) + ", " + unit; }
};

/// The places of the figures.
enum FigureIndex {
  kFigure_Loudness,
  kFigure_LoudnessRange,
  kFigure_TruePeak,
  kFigure_SamplePeak,
  kFigure_NoiseFloor,
  kFigure_HumFrequency,
  kFigure_HumLevel,
  kFigure_Duration,
  kFigure_Count
};

std::array<Figure, kFigure_Count> FiguresOf(const ClipAnalysis& analysis);

/// A file's analysis as JSON: `file`, `integrated_lufs`, `loudness_range_lu`, `true_peak_dbtp`,
/// `sample_peak_dbfs`, `noise_floor_dbfs`, `hum_hz`, `hum_dbfs`, `duration_s`, `sample_rate`,
/// `channels`. Null stands for minus infinity, which JSON cannot write, and for hum that is not
/// there.
teskcore::serialization::JSONValue ToJSON(const std::string& file, const ClipAnalysis& analysis);

/// The same for people.
std::string ToText(const std::string& file, const ClipAnalysis& analysis);

}  // namespace orvelhost
