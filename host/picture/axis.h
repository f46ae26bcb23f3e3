#pragma once

#include <string>
#include <vector>

namespace orvelhost {

/// A value with a mark and a name beside a scale.
struct Tick {
  double value;
  std::string text;
};

/// A scale from the value `low` at the pixel `begin` to `high` at `end`.
struct Axis {
  double low;
  double high;
  double begin;
  double end;
  bool logarithmic = false;

  /// The pixel of a value. One beyond an end lies outside, by the axis's length at most.
  double At(double value) const;
};

/// With the sign that mathematics has for minus, and a sign for infinite.
std::string NumberText(double value, int decimals);

/// The multiples of `step` between two values.
std::vector<Tick> LevelTicks(double low, double high, double step);

/// Round times from 0 to `seconds`, ten or so at the most.
std::vector<Tick> TimeTicks(double seconds);
/// The unit in which these are given.
std::string TimeUnit(double seconds);

/// From 20 Hz to 20 kHz.
std::vector<Tick> FrequencyTicks();

}  // namespace orvelhost
