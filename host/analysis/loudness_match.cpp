#include "host/analysis/loudness_match.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

// Half of the smallest step of 24 bits, in dBTP: what stays below it is no recording, but what the
// arithmetic of the effects leaves of silence.
constexpr double kSilence = -144.5;

}  // namespace

LoudnessMatch MatchLoudness(double loudness, double truePeak, const LoudnessTarget& target) {
  if (!std::isfinite(loudness) || !(truePeak >= kSilence)) {
    return {0.0, -std::numeric_limits<double>::infinity(), kAnalysis_NotMeasurable};
  }
  const double wanted = target.target - loudness;
  const double room = target.ceiling - truePeak;
  const double gain = std::min(wanted, room);
  return {gain, loudness + gain, gain < wanted ? kAnalysis_CeilingLimits : kAnalysis_Done};
}

}  // namespace orvelhost
