#include "host/analysis/dynamics_levels.h"

#include <algorithm>
#include <cmath>

namespace orvelhost {
namespace {

constexpr double kWindow = 0.05;     // seconds; about the time in which loudness is felt
constexpr double kSilence = -100.0;  // dBFS, the lowest level that the settings know
constexpr double kLoudest = 220.0;   // dBFS; the loudest sample that a reader lets through is less

}  // namespace

DynamicsMeter::DynamicsMeter(const AudioFormat& format)
    : windows_(format, kWindow), levels_(kSilence, kLoudest, 0.1) {}

void DynamicsMeter::Add(const AudioBlock& block) {
  windows_.Add(
      block,
      [this](std::size_t /*channel*/, std::span<const float> samples) {
        for (const float sample : samples) peak_ = std::max(peak_, std::abs(sample));
      },
      [this] {
        if (const double level = 20.0 * std::log10(peak_); level > kSilence) levels_.Add(level);
        peak_ = 0.0f;
      });
}

std::optional<DynamicsLevels> DynamicsMeter::Measure() const {
  if (levels_.IsEmpty()) {
    const double rest = 20.0 * std::log10(peak_);
    return rest > kSilence
               ? std::optional(DynamicsLevels{static_cast<float>(rest), static_cast<float>(rest)})
               : std::nullopt;
  }
  // Where the quietest stretches lie far below the loud ones they are pauses, and what reaches
  // above them is not.
  constexpr double kDepthOfPauses = 12.0;
  constexpr double kAbovePauses = 6.0;
  const double pauses = levels_.Quantile(0.05);
  const bool hasPauses = levels_.Quantile(0.95) - pauses > kDepthOfPauses;
  const double gate = hasPauses ? pauses + kAbovePauses : kSilence;
  return DynamicsLevels{static_cast<float>(levels_.Quantile(0.95, gate)),
                        static_cast<float>(levels_.Quantile(0.2, gate))};
}

}  // namespace orvelhost
