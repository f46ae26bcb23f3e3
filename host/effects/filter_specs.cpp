#include "host/effects/filter_specs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace orvelhost {
namespace {

/// Frames by which the filter lags. The response is twice as long; the filter's own transforms end
/// at 65536 frames, and earlier where they have to find a minimum phase.
std::int64_t FirDelay(const FirCurve& curve, int sampleRate) {
  constexpr double kShortest = 128.0;
  constexpr double kLongest = 20000.0;
  constexpr double kLongestMinimumPhase = 4800.0;
  const double frames = curve.length / 2.0 * sampleRate / 48000.0;
  return std::lround(
      std::clamp(frames, kShortest, curve.minimumPhase ? kLongestMinimumPhase : kLongest));
}

}  // namespace

std::string Text(double value) {
  std::array<char, 32> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

FilterSpec Gain(double factor) {
  return {"volume", {{"volume", Text(factor)}, {"precision", "double"}}};
}

FilterSpec Matrix(const std::string& left, const std::string& right) {
  return {"pan", {{"args", "stereo|c0=" + left + "|c1=" + right}}};
}

FilterSpec Sum(std::vector<std::vector<FilterSpec>> branches) {
  FilterSpec sum;
  sum.branches = std::move(branches);
  return sum;
}

std::vector<FilterSpec> Blend(std::vector<FilterSpec> filters, double share) {
  if (share >= 1.0 || filters.empty()) {
    return filters;
  }
  filters.push_back(Gain(share));
  return {Sum({{Gain(1.0 - share)}, std::move(filters)})};
}

std::vector<FilterSpec> Removed(std::vector<FilterSpec> filters) {
  filters.push_back(Gain(-1.0));
  return {Sum({{Gain(1.0)}, std::move(filters)})};
}

std::vector<FilterSpec> FirFilter(const FirCurve& curve, int sampleRate) {
  constexpr double kInaudible = 1e-4;  // dB
  if (std::ranges::all_of(curve.points,
                          [](const auto& point) { return std::abs(point.second) < kInaudible; })) {
    return {};
  }
  std::string entries;
  for (const auto& [frequency, gain] : curve.points) {
    entries += (entries.empty() ? "entry(" : ";entry(") +
               Text(curve.octaves ? std::log2(frequency / 20.0) : frequency) + "," + Text(gain) +
               ")";
  }
  const std::int64_t delay = FirDelay(curve, sampleRate);
  return {{"firequalizer",
           {{"gain", curve.smooth ? "cubic_interpolate(f)" : "gain_interpolate(f)"},
            {"gain_entry", entries},
            {"scale", curve.octaves ? "loglog" : "linlog"},
            {"wfunc", curve.window},
            {"min_phase", curve.minimumPhase ? "1" : "0"},
            {"accuracy", Text(sampleRate / 32768.0)},
            // The filter rounds down to whole frames.
            {"delay", Text((static_cast<double>(delay) + 0.25) / sampleRate)},
            // Long steps: short ones repeat the transform for few samples.
            {"fixed", "1"}},
           curve.minimumPhase ? 0 : delay}};
}

}  // namespace orvelhost
