#include "host/analysis/beats.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace orvelhost {
namespace {

constexpr std::size_t kFewest = 8;

/// A beat as it was heard, with the number that it has when none is missed.
struct HeardBeat {
  int number;
  double time;
};

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

/// Counts the beats, by how many of the distances that were usual lately lie between two of them.
std::vector<HeardBeat> Number(const std::vector<double>& times) {
  constexpr std::size_t kMemory = 16;
  std::vector<double> distances;
  for (std::size_t index = 1; index < std::min(times.size(), kMemory); ++index) {
    distances.push_back(times[index] - times[index - 1]);
  }
  double usual = Median(distances);
  std::vector<HeardBeat> beats = {{0, times.front()}};
  for (std::size_t index = 1; index < times.size(); ++index) {
    const HeardBeat last = beats.back();
    const int steps =
        std::max(1, static_cast<int>(std::lround((times[index] - last.time) / usual)));
    beats.push_back({last.number + steps, times[index]});
    if (beats.size() > kMemory) {
      const HeardBeat& first = beats[beats.size() - 1 - kMemory];
      usual = (times[index] - first.time) / (beats.back().number - first.number);
    }
  }
  return beats;
}

/// time = begin + number * period
struct Line {
  double begin;
  double period;

  double At(int number) const { return begin + number * period; }
};

/// The line through the beats, without those far off the first try.
Line Fit(std::span<const HeardBeat> beats) {
  constexpr double kFarOff = 0.15;  // of a period
  Line line{};
  for (int round = 0; round < 3; ++round) {
    double count = 0.0;
    double numbers = 0.0;
    double times = 0.0;
    double squares = 0.0;
    double products = 0.0;
    for (const HeardBeat& beat : beats) {
      if (round > 0 && std::abs(beat.time - line.At(beat.number)) > kFarOff * line.period) {
        continue;
      }
      count += 1.0;
      numbers += beat.number;
      times += beat.time;
      squares += static_cast<double>(beat.number) * beat.number;
      products += beat.number * beat.time;
    }
    const double spread = count * squares - numbers * numbers;
    if (spread <= 0.0) {
      break;  // all but one lie far off; the try before stands
    }
    line.period = (count * products - numbers * times) / spread;
    line.begin = (times - line.period * numbers) / count;
  }
  return line;
}

/// The line through the heard beats that are nearest to the `number`th.
Line FitAround(const std::vector<HeardBeat>& beats, int number) {
  constexpr std::ptrdiff_t kReach = 8;
  const auto nearest = std::ranges::lower_bound(beats, number, {}, &HeardBeat::number);
  return Fit({nearest - std::min(kReach, nearest - beats.begin()),
              nearest + std::min(kReach + 1, beats.end() - nearest)});
}

/// How much begins at the best moment from `time` - 40 ms to `time` + 10 ms; the attack of a sound
/// is seen early, by half a window.
double OnsetNear(const MusicFeatures& features, double time) {
  constexpr double kHop = static_cast<double>(MusicFeatures::kOnsetHop) / MusicFeatures::kRate;
  const auto indexOf = [&](double seconds) {
    return static_cast<std::size_t>(
        std::clamp(seconds / kHop, 0.0, static_cast<double>(features.onsets.size())));
  };
  const auto begin = features.onsets.begin();
  const auto from = begin + static_cast<std::ptrdiff_t>(indexOf(time - 0.04));
  const auto to = begin + static_cast<std::ptrdiff_t>(indexOf(time + 0.01));
  return from == to ? 0.0 : static_cast<double>(*std::max_element(from, to));
}

/// How many times more begins on the beats than a quarter beat beside them.
double Contrast(const MusicFeatures& features, const std::vector<double>& times) {
  double on = 0.0;
  double beside = 0.0;
  for (std::size_t index = 0; index + 1 < times.size(); ++index) {
    const double quarter = (times[index + 1] - times[index]) / 4;
    on += OnsetNear(features, times[index]);
    beside += OnsetNear(features, times[index] + quarter) / 2;
    beside += OnsetNear(features, times[index] + 3 * quarter) / 2;
  }
  return on / std::max(beside, 1e-9);
}

}  // namespace

std::optional<Beats> StraightenBeats(const MusicFeatures& features) {
  constexpr double kSteadyPart = 0.7;
  constexpr double kNearLine = 0.1;  // of a period
  constexpr double kLeastContrast = 1.2;
  if (features.beats.size() < kFewest) {
    return std::nullopt;
  }
  const std::vector<HeardBeat> heard = Number(features.beats);
  const int last = heard.back().number;
  const Line opening = FitAround(heard, 0);
  const Line closing = FitAround(heard, last);

  double steady = 0.0;
  for (const HeardBeat& beat : heard) {
    const Line line = FitAround(heard, beat.number);
    steady += std::abs(beat.time - line.At(beat.number)) < kNearLine * line.period ? 1.0 : 0.0;
  }
  if (steady < kSteadyPart * static_cast<double>(heard.size())) {
    return std::nullopt;
  }
  Beats beats{};
  const auto add = [&](double time) {
    if (time >= 0.0 && time < features.duration &&
        (beats.times.empty() || time > beats.times.back())) {
      beats.times.push_back(time);
    }
  };
  for (int number = -static_cast<int>(opening.begin / opening.period); number < 0; ++number) {
    add(opening.At(number));
  }
  for (int number = 0; number <= last; ++number) {
    add(FitAround(heard, number).At(number));
  }
  for (int number = last + 1; closing.At(number) < features.duration; ++number) {
    add(closing.At(number));
  }
  if (beats.times.size() < kFewest || Contrast(features, beats.times) < kLeastContrast) {
    return std::nullopt;
  }
  beats.tempo = 60.0 * static_cast<double>(beats.times.size() - 1) /
                (beats.times.back() - beats.times.front());
  return beats;
}

}  // namespace orvelhost
