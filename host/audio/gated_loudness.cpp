#include "host/audio/gated_loudness.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvelhost {
namespace {

constexpr std::size_t kHopsPerBlock = 4;  // gating blocks of 0.4 s overlap by three quarters
constexpr double kAbsoluteGate = -70.0;   // LUFS
constexpr double kRelativeGate = -10.0;   // LU

double PowerOf(double loudness) { return std::pow(10.0, loudness / 10.0); }

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
    : hop_(static_cast<std::size_t>(std::lround(format.sampleRate / 10.0))),
      isMeasurable_(LoudnessState::IsMeasurable(format)),
      state_(format, EBUR128_MODE_M | EBUR128_MODE_TRUE_PEAK) {}

void GatedLoudness::Add(const AudioBlock& block) {
  for (std::size_t begin = 0; begin < block.FrameCount();) {
    const std::size_t count = std::min(hop_ - filled_, block.FrameCount() - begin);
    state_.Add(block, begin, count);
    begin += count;
    filled_ += count;
    if (filled_ < hop_) break;
    filled_ = 0;
    ++hopCount_;
    double loudness = 0.0;
    if (isMeasurable_ && hopCount_ >= kHopsPerBlock &&
        ebur128_loudness_momentary(state_.Get(), &loudness) == EBUR128_SUCCESS &&
        std::isfinite(loudness)) {
      powers_.push_back(PowerOf(loudness));
    }
  }
}

double GatedLoudness::With(double gain) const {
  const double gate = PowerOf(kAbsoluteGate - gain);
  const double mean = MeanFrom(gate, powers_);
  if (std::isnan(mean)) return -std::numeric_limits<double>::infinity();
  const double relativeGate = mean * PowerOf(kRelativeGate);
  return 10.0 * std::log10(MeanFrom(std::max(gate, relativeGate), powers_)) + gain;
}

double GatedLoudness::TruePeak() const {
  double greatest = 0.0;
  for (unsigned channel = 0; channel < state_.Get()->channels; ++channel) {
    double peak = 0.0;
    ebur128_true_peak(state_.Get(), channel, &peak);
    greatest = std::max(greatest, peak);
  }
  return 20.0 * std::log10(greatest);
}

}  // namespace orvelhost
