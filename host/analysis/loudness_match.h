#pragma once

#include "host/analysis/clip_analysis.h"

namespace orvelhost {

/// The values of "AnalysisStatus" in the loudness section, and in the clarity section for its
/// dynamics, which never has kAnalysis_CeilingLimits.
enum AnalysisStatus : int {
  kAnalysis_None = 0,           ///< nothing was asked for yet, or the measurement was discarded
  kAnalysis_Running = 1,        ///< under way
  kAnalysis_Done = 2,           ///< measured, and the target is reached
  kAnalysis_CeilingLimits = 3,  ///< measured; peaks keep the clip below its target
  kAnalysis_NotMeasurable = 4,  ///< the clip is silent or shorter than the measurement needs
};

/// What the loudness section's configuration asks for.
struct LoudnessTarget {
  double target = -23.0;  ///< LUFS
  double ceiling = -1.0;  ///< dBTP; EBU R 128 allows no more
};

struct LoudnessMatch {
  double gain;     ///< in dB, to be applied to the clip
  double reached;  ///< LUFS with that gain; minus infinity when not measurable
  AnalysisStatus status;
};

/// The gain that brings a clip of `loudness` (LUFS) and `truePeak` (dBTP) to the target. Only
/// the ceiling is stronger: the gain ends where the peaks reach it. What stays below all that 24
/// bits hold is silent, and not measurable.
LoudnessMatch MatchLoudness(double loudness, double truePeak, const LoudnessTarget& target);

}  // namespace orvelhost
