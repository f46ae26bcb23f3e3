#include "host/audio/gated_loudness.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/audio/decibels.h"

namespace orvelhost {
namespace {

constexpr std::size_t kHopsPerBlock = 4;  // gating blocks of 0.4 s overlap by three quarters
constexpr double kAbsoluteGate = -70.0;   // LUFS
constexpr double kRelativeGate = -10.0;   // LU

/// Of the powers from the gate on; not a number when there are none.
double MeanFrom(double gate, const std::vector<double>& powers) {
  double sum = 0.0;
  std::size_t count = 0;
  for (const double power : powers) {
    if (power < gate) continue;
    sum += power;
    ++count;
  }
  return sum / static_cast<double>(count);
}

}  // namespace

GatedLoudness::GatedLoudness(const AudioFormat& format)
    : hops_(format, 0.1),
      isMeasurable_(LoudnessState::IsMeasurable(format)),
      state_(format, EBUR128_MODE_M | EBUR128_MODE_TRUE_PEAK) {}

void GatedLoudness::Add(const AudioBlock& block) {
  hops_.Cut(
      block, [&](std::size_t begin, std::size_t count) { state_.Add(block, begin, count); },
      [this] { EndHop(); });
}

void GatedLoudness::EndHop() {
  ++hopCount_;
  double loudness = 0.0;
  if (isMeasurable_ && hopCount_ >= kHopsPerBlock &&
      ebur128_loudness_momentary(state_.Get(), &loudness) == EBUR128_SUCCESS &&
      std::isfinite(loudness)) {
    powers_.push_back(PowerFactor(loudness));
  }
}

double GatedLoudness::With(double gain) const {
  const double gate = PowerFactor(kAbsoluteGate - gain);
  const double mean = MeanFrom(gate, powers_);
  if (std::isnan(mean)) return -std::numeric_limits<double>::infinity();
  const double relativeGate = mean * PowerFactor(kRelativeGate);
  return 10.0 * std::log10(MeanFrom(std::max(gate, relativeGate), powers_)) + gain;
}

double GatedLoudness::TruePeak() const { return state_.Peak(ebur128_true_peak); }

}  // namespace orvelhost
