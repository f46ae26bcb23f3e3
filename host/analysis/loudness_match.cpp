#include "host/analysis/loudness_match.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {

LoudnessMatch MatchLoudness(double loudness, double truePeak, const LoudnessTarget& target) {
  if (!std::isfinite(loudness) || !std::isfinite(truePeak)) {
    return {0.0, -std::numeric_limits<double>::infinity(), kAnalysis_NotMeasurable};
  }
  const double aim = std::max(target.least, std::min(target.target, target.greatest));
  const double wanted = aim - loudness;
  const double room = target.ceiling - truePeak;
  const double gain = std::min(wanted, room);
  return {gain, loudness + gain, gain < wanted ? kAnalysis_CeilingLimits : kAnalysis_Done};
}

}  // namespace orvelhost
