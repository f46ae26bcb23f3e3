#include "tests/host/support/signals.h"

#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>

namespace orvelhost::testing {
namespace {

constexpr double kTurn = 2 * std::numbers::pi;

}  // namespace

Signal Sine(double amplitude, double frequency) {
  return [=](double time, int channel) {
    return amplitude * std::sin(kTurn * (frequency * time - channel / 8.0));
  };
}

Signal Noise(double amplitude) {
  return [amplitude, random = std::mt19937(1)](double, int) mutable {
    return std::uniform_real_distribution<double>(-amplitude, amplitude)(random);
  };
}

Signal Sum(std::vector<Signal> signals) {
  return [signals = std::move(signals)](double time, int channel) {
    double sum = 0.0;
    for (const Signal& signal : signals) sum += signal(time, channel);
    return sum;
  };
}

Signal During(double begin, double end, Signal signal) {
  return [=](double time, int channel) {
    return time >= begin && time < end ? signal(time, channel) : 0.0;
  };
}

Signal Harmonics(double base, const std::vector<double>& amplitudes) {
  return [=](double time, int) {
    double sum = 0.0;
    for (std::size_t index = 0; index < amplitudes.size(); ++index) {
      const double number = static_cast<double>(index + 1);
      sum += amplitudes[index] * std::sin(kTurn * base * number * time + number * number);
    }
    return sum;
  };
}

Signal Clicks(double beatsPerMinute) {
  return [=](double time, int) {
    const double since = std::fmod(time, 60.0 / beatsPerMinute);
    return 0.5 * std::exp(-since * 200.0) * std::sin(kTurn * 1000.0 * since);
  };
}

Signal ChordLoop() {
  return [](double time, int) {
    constexpr std::array<std::array<double, 3>, 4> kChords = {{{261.6, 329.6, 392.0},
                                                               {220.0, 261.6, 329.6},
                                                               {174.6, 220.0, 261.6},
                                                               {196.0, 246.9, 293.7}}};
    const double inLoop = std::fmod(time + 1e-9, kChordLoop);
    const double inBar = std::fmod(inLoop, 2.0);
    const double inBeat = std::fmod(inLoop, 0.5);
    double sum = 0.0;
    for (const double tone : kChords[static_cast<std::size_t>(inLoop / 2.0)]) {
      sum += 0.08 * std::exp(-inBar) * std::sin(kTurn * tone * inBar);
    }
    const double drum = inBar < 0.5 ? 70.0 : 1500.0;
    return sum + 0.4 * std::exp(-inBeat * 60.0) * std::sin(kTurn * drum * inBeat);
  };
}

}  // namespace orvelhost::testing
