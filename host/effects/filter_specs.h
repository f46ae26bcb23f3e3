#pragma once

#include <string>
#include <vector>

#include "host/audio/decibels.h"
#include "host/audio/filter_graph.h"

namespace orvelhost {

/// With all digits, so that the filter computes with the very number that was meant.
std::string Text(double value);

/// Multiplies by `factor`, which may be negative.
FilterSpec Gain(double factor);

/// Two outputs out of two inputs, or of the one there is. Each text is a sum as in "0.5*c0+0.5*c1".
FilterSpec Matrix(const std::string& left, const std::string& right);

/// A chain or an unchanged signal beside others; the outputs are added.
FilterSpec Sum(std::vector<std::vector<FilterSpec>> branches);

/// `filters` at `share` (0..1) beside the unchanged signal at what is left of 1.
std::vector<FilterSpec> Blend(std::vector<FilterSpec> filters, double share);

/// What `filters` take away.
std::vector<FilterSpec> Removed(std::vector<FilterSpec> filters);

/// The parameters of a filter of finite impulse response, libavfilter's firequalizer.
struct FirCurve {
  std::vector<std::pair<double, double>> points;  ///< gain in dB over frequency in Hz, rising
  bool octaves = false;       ///< between the points, frequency counts in octaves
  bool smooth = false;        ///< else straight lines from point to point
  bool minimumPhase = false;  ///< no ringing ahead of a sound; else no change of phase
  double length = 8192.0;     ///< of the response, in samples at 48 kHz, and as long at other rates
  const char* window = "hann";
};

/// The filter; none when the curve is flat at 0 dB.
std::vector<FilterSpec> FirFilter(const FirCurve& curve, int sampleRate);

}  // namespace orvelhost
