#include "host/timing/remix_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>

#include "host/analysis/beats.h"
#include "host/analysis/music_features.h"

namespace orvelhost {
namespace {

constexpr int kQuarters = 4;  // of a beat

/// How one beat sounds, quarter by quarter.
using BeatSound = std::array<SoundFeatures, kQuarters>;

/// The mean of the sounds from `begin` to `end`, in seconds; at least of one.
SoundFeatures MeanSound(const std::vector<SoundFeatures>& sounds, double begin, double end) {
  constexpr double kHop = static_cast<double>(MusicFeatures::kSoundHop) / MusicFeatures::kRate;
  const auto indexOf = [&](double time) {
    return static_cast<std::size_t>(
        std::clamp(std::lround(time / kHop), 0L, static_cast<long>(sounds.size()) - 1));
  };
  const std::size_t first = indexOf(begin);
  const std::size_t last = std::max(first + 1, indexOf(end));
  SoundFeatures mean{};
  const float share = 1.0f / static_cast<float>(last - first);
  for (const SoundFeatures& sound : std::span(sounds).subspan(first, last - first)) {
    for (std::size_t band = 0; band < mean.bands.size(); ++band) {
      mean.bands[band] += share * sound.bands[band];
    }
    for (std::size_t tone = 0; tone < mean.tones.size(); ++tone) {
      mean.tones[tone] += share * sound.tones[tone];
    }
  }
  return mean;
}

std::vector<BeatSound> SoundOfBeats(const MusicFeatures& features, const Beats& beats) {
  std::vector<BeatSound> sounds;
  for (std::size_t beat = 0; beat + 1 < beats.times.size(); ++beat) {
    const double quarter = (beats.times[beat + 1] - beats.times[beat]) / kQuarters;
    BeatSound& sound = sounds.emplace_back();
    for (int index = 0; index < kQuarters; ++index) {
      const double begin = beats.times[beat] + index * quarter;
      sound[static_cast<std::size_t>(index)] = MeanSound(features.sounds, begin, begin + quarter);
    }
  }
  return sounds;
}

/// 0 for the same tones, up to 2.
float ToneDistance(const SoundFeatures& left, const SoundFeatures& right) {
  return std::transform_reduce(left.tones.begin(), left.tones.end(), right.tones.begin(), 0.0f,
                               std::plus<>(), [](float a, float b) { return std::abs(a - b); });
}

/// About 1 for two sounds that have nothing in common.
float Distance(const SoundFeatures& left, const SoundFeatures& right) {
  constexpr float kUnlike = 20.0f;  // dB
  const float bands =
      std::transform_reduce(left.bands.begin(), left.bands.end(), right.bands.begin(), 0.0f,
                            std::plus<>(), [](float a, float b) { return std::abs(a - b); }) /
      (kUnlike * SoundFeatures::kBands);
  return 0.5f * bands + 0.5f * ToneDistance(left, right);
}

float Distance(std::span<const BeatSound> left, std::span<const BeatSound> right) {
  float sum = 0.0f;
  for (std::size_t beat = 0; beat < left.size(); ++beat) {
    for (std::size_t quarter = 0; quarter < kQuarters; ++quarter) {
      sum += Distance(left[beat][quarter], right[beat][quarter]);
    }
  }
  return sum / static_cast<float>(kQuarters * left.size());
}

/// How much the beats differ from those `lag` beats later.
float MeanDistance(std::span<const BeatSound> sounds, std::size_t lag) {
  return Distance(sounds.first(sounds.size() - lag), sounds.subspan(lag));
}

/// Three when the music repeats clearly better after three beats than after four.
int BeatsPerBar(const std::vector<BeatSound>& sounds) {
  constexpr float kClearly = 0.85f;
  if (sounds.size() < 24) {
    return 4;
  }
  const float threes = MeanDistance(sounds, 3) + MeanDistance(sounds, 6);
  const float fours = MeanDistance(sounds, 4) + MeanDistance(sounds, 8);
  return threes < kClearly * fours ? 3 : 4;
}

/// Subtracts the mean and divides by the standard deviation.
void Standardize(std::vector<double>& values) {
  const double count = static_cast<double>(values.size());
  const double mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
  double variance = 1e-9;
  for (const double value : values) {
    variance += (value - mean) * (value - mean) / count;
  }
  for (double& value : values) {
    value = (value - mean) / std::sqrt(variance);
  }
}

/// Which of the first beats begins a bar: where chords change, the bass plays and it is loudest.
std::size_t FirstBarBeat(const std::vector<BeatSound>& sounds, int beatsPerBar) {
  constexpr std::size_t kBassBands = 3;
  std::vector<double> changes;
  std::vector<double> basses;
  std::vector<double> levels;
  for (std::size_t beat = 0; beat < sounds.size(); ++beat) {
    float change = 0.0f;
    if (beat > 0) {
      for (std::size_t quarter = 0; quarter < kQuarters; ++quarter) {
        change += ToneDistance(sounds[beat][quarter], sounds[beat - 1][quarter]);
      }
    }
    changes.push_back(static_cast<double>(change));
    const auto& bands = sounds[beat].front().bands;
    basses.push_back(std::accumulate(bands.begin(), bands.begin() + kBassBands, 0.0));
    levels.push_back(std::accumulate(bands.begin(), bands.end(), 0.0));
  }
  Standardize(changes);
  Standardize(basses);
  Standardize(levels);
  const std::size_t period = static_cast<std::size_t>(beatsPerBar);
  std::vector<double> scores(period);
  for (std::size_t beat = 0; beat < sounds.size(); ++beat) {
    const std::size_t phaseCount = (sounds.size() - beat % period - 1) / period + 1;
    scores[beat % period] +=
        (changes[beat] + basses[beat] + 0.5 * levels[beat]) / static_cast<double>(phaseCount);
  }
  return static_cast<std::size_t>(std::ranges::max_element(scores) - scores.begin());
}

/// The joins into each bar line. A join is good when the bar that was about to come sounds as the
/// one that comes instead, and the bar before as the one that stands before that.
std::vector<std::vector<RemixJoin>> RateJoins(std::span<const BeatSound> sounds, int beatsPerBar,
                                              const std::vector<std::int64_t>& barLines) {
  constexpr std::size_t kKept = 64;
  const int barCount = static_cast<int>(barLines.size()) - 1;
  const auto bar = [&](int index) {
    const auto beats = static_cast<std::size_t>(beatsPerBar);
    return sounds.subspan(static_cast<std::size_t>(index) * beats, beats);
  };
  const auto length = [&](int index) {
    const std::size_t line = static_cast<std::size_t>(index);
    return static_cast<float>(barLines[line + 1] - barLines[line]);
  };
  std::vector<float> distances(static_cast<std::size_t>(barCount) *
                               static_cast<std::size_t>(barCount));
  const auto distance = [&](int left, int right) -> float& {
    return distances[static_cast<std::size_t>(left) * static_cast<std::size_t>(barCount) +
                     static_cast<std::size_t>(right)];
  };
  for (int left = 0; left < barCount; ++left) {
    for (int right = left + 1; right < barCount; ++right) {
      distance(left, right) = distance(right, left) =
          Distance(bar(left), bar(right)) + std::abs(std::log(length(left) / length(right)));
    }
  }
  std::vector<std::vector<RemixJoin>> joins(barLines.size());
  for (int entry = 1; entry < barCount; ++entry) {
    std::vector<RemixJoin>& into = joins[static_cast<std::size_t>(entry)];
    for (int exit = 1; exit < barCount; ++exit) {
      if (exit != entry) {
        into.push_back(
            {exit, entry, 0.5f * (distance(exit, entry) + distance(exit - 1, entry - 1))});
      }
    }
    std::ranges::stable_sort(into, {}, &RemixJoin::cost);
    into.resize(std::min(into.size(), kKept));
    into.shrink_to_fit();
  }
  return joins;
}

}  // namespace

std::optional<RemixMap> MapForRemix(AudioSource& clip, const Progress& progress) {
  constexpr int kFewestBars = 4;
  constexpr int kMostBars = 5000;
  MusicListener listener(clip.Format());
  ProgressingReader reader(clip, progress);
  for (AudioBlock block; reader.Read(block);) {
    listener.Add(block);
  }
  const MusicFeatures features = listener.Finish();
  const std::optional<Beats> beats = StraightenBeats(features);
  if (!beats) {
    return std::nullopt;
  }
  const std::vector<BeatSound> sounds = SoundOfBeats(features, *beats);
  RemixMap map;
  map.format = clip.Format();
  map.frameCount = reader.FrameCount();
  map.beatsPerBar = BeatsPerBar(sounds);
  const std::size_t first = FirstBarBeat(sounds, map.beatsPerBar);
  for (std::size_t beat = first; beat < beats->times.size();
       beat += static_cast<std::size_t>(map.beatsPerBar)) {
    map.barLines.push_back(std::llround(beats->times[beat] * map.format.sampleRate));
  }
  const int barCount = static_cast<int>(map.barLines.size()) - 1;
  if (barCount < kFewestBars || barCount > kMostBars) {
    return std::nullopt;
  }
  map.joins = RateJoins(std::span(sounds).subspan(first), map.beatsPerBar, map.barLines);
  return map;
}

int LeastBarsBetweenJoins(const RemixMap& map, bool favorShortSegments) {
  constexpr int kUsual = 4;
  const int barCount = static_cast<int>(map.barLines.size()) - 1;
  return favorShortSegments ? 1 : std::clamp(barCount / 4, 1, kUsual);
}

DurationRange RemixRange(const RemixMap& map) {
  constexpr double kDay = 86400.0;
  const double bars = static_cast<double>(map.barLines.back() - map.barLines.front());
  const double barCount = static_cast<double>(map.barLines.size() - 1);
  const double kept = 2 * LeastBarsBetweenJoins(map, false);
  const double frames = static_cast<double>(map.frameCount);
  const double least = frames - bars + bars * std::min(1.0, kept / barCount);
  return {std::min(kDay, least / map.format.sampleRate),
          std::min(kDay, 4 * frames / map.format.sampleRate)};
}

}  // namespace orvelhost
