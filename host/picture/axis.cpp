#include "host/picture/axis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace orvelhost {
namespace {

// clang-format off
constexpr std::array kSteps = {
    0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 20.0,  // s
    30.0, 60.0, 120.0, 300.0, 600.0, 1200.0,                                          // min
    1800.0, 3600.0, 7200.0, 14400.0, 28800.0, 86400.0, 864000.0};                     // h
// clang-format on

constexpr double kMinutes = 120.0;  // from here on times are told in minutes
constexpr double kHours = 7200.0;

std::string TimeText(double time, double seconds, double step) {
  if (seconds < kMinutes) {
    const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    return NumberText(time, decimals);
  }
  const long whole = std::lround(time);
  std::array<char, 32> text{};
  if (seconds < kHours) {
    std::snprintf(text.data(), text.size(), "%ld:%02ld", whole / 60, whole % 60);
  } else {
    std::snprintf(text.data(), text.size(), "%ld:%02ld", whole / 3600, whole / 60 % 60);
  }
  return text.data();
}

}  // namespace

double Axis::At(double value) const {
  const double place =
      logarithmic ? std::log(value / low) / std::log(high / low) : (value - low) / (high - low);
  return begin + std::clamp(place, -1.0, 2.0) * (end - begin);
}

std::string NumberText(double value, int decimals) {
  std::array<char, 400> digits{};
  std::snprintf(digits.data(), digits.size(), "%.*f", decimals, std::abs(value));
  const std::string text = std::isinf(value) ? "\u221e" : digits.data();
  const bool isZero = text.find_first_not_of("0.") == std::string::npos;
  return value < 0.0 && !isZero ? "\u2212" + text : text;
}

std::vector<Tick> LevelTicks(double low, double high, double step) {
  std::vector<Tick> ticks;
  for (double value = std::ceil(low / step) * step; value <= high; value += step) {
    ticks.push_back({value, NumberText(value, 0)});
  }
  return ticks;
}

std::vector<Tick> TimeTicks(double seconds) {
  constexpr double kMost = 12.0;
  const auto* found = std::ranges::lower_bound(kSteps, seconds / kMost);
  const double step = found == kSteps.end() ? kSteps.back() : *found;
  std::vector<Tick> ticks;
  for (int index = 0; index * step <= seconds; ++index) {
    ticks.push_back({index * step, TimeText(index * step, seconds, step)});
  }
  return ticks;
}

std::string TimeUnit(double seconds) {
  return seconds < kMinutes ? "s" : seconds < kHours ? "min:s" : "h:min";
}

std::vector<Tick> FrequencyTicks() {
  return {{20, "20"},   {50, "50"},   {100, "100"}, {200, "200"},   {500, "500"},
          {1000, "1k"}, {2000, "2k"}, {5000, "5k"}, {10000, "10k"}, {20000, "20k"}};
}

}  // namespace orvelhost
