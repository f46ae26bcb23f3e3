#include "host/analysis/steady_noise.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "host/analysis/level_histogram.h"
#include "host/analysis/noise_floor.h"
#include "host/audio/decibels.h"

namespace orvelhost {
namespace {

constexpr double kStep = 0.1;      // seconds
constexpr std::size_t kLong = 6;   // steps
constexpr std::size_t kShort = 3;  // as the pauses between the words of a hasty speaker
/// Between the steps of one stretch. Noise of 100 Hz bandwidth varies as much; a fade out of the
/// noise, and a word, by more.
constexpr double kSteady = 4.0;    // dB
constexpr double kCell = 0.5;      // dB
constexpr double kLowPart = 0.1;   // of the stretches
constexpr double kSpread = 4.0;    // dB, of the stretches that are averaged
constexpr double kDither = -90.0;  // dBFS, of 16 bits
constexpr float kSilent = -std::numeric_limits<float>::infinity();

int CellOf(double level) { return static_cast<int>(std::floor(level / kCell)); }
double LevelOf(int cell) { return cell * kCell; }
double InDb(double power) { return 10.0 * std::log10(power); }

/// The cell below which lies the low part of the stretches that are not below `from`.
template <typename Cells>
std::optional<int> LowCell(const Cells& cells, int from) {
  double rank = 0.0;
  for (auto cell = cells.lower_bound(from); cell != cells.end(); ++cell) {
    rank += kLowPart * cell->second.count;
  }
  for (auto cell = cells.lower_bound(from); cell != cells.end(); ++cell) {
    if (rank <= cell->second.count) return cell->first;
    rank -= cell->second.count;
  }
  return std::nullopt;
}

}  // namespace

SteadyNoise::SteadyNoise(const AudioFormat& format)
    : steps_(format, kStep),
      bands_(format.sampleRate, steps_.Size()),
      samples_(static_cast<std::size_t>(format.channelCount)) {}

SteadyNoise::Cell& SteadyNoise::Cell::operator+=(const Cell& other) {
  count += other.count;
  std::ranges::transform(powers, other.powers, powers.begin(), std::plus<>());
  return *this;
}

void SteadyNoise::Add(const AudioBlock& block) {
  steps_.Add(
      block,
      [this](std::size_t channel, std::span<const float> samples) {
        samples_[channel].insert(samples_[channel].end(), samples.begin(), samples.end());
      },
      [this] { EndStep(); });
}

SteadyNoise::Step SteadyNoise::TakeStep() {
  Step step{0.0, {}};
  for (std::vector<double>& samples : samples_) {
    double energy = 0.0;
    for (const double sample : samples) energy += sample * sample;
    step.power += energy / static_cast<double>(samples.size() * samples_.size());
    step.channels.push_back(bands_.Measure(samples));
    samples.clear();
  }
  return step;
}

void SteadyNoise::EndStep() {
  Step step = TakeStep();
  const double level = InDb(step.power);
  if (level < kDigitalSilence) {
    course_.push_back(kSilent);
    recent_.clear();
    return;
  }
  course_.push_back(static_cast<float>(level));
  recent_.push_back(std::move(step));
  if (recent_.size() > kLong) recent_.pop_front();
  CollectStretch(kLong, long_);
  CollectStretch(kShort, short_);
}

bool SteadyNoise::IsSteady(std::size_t length) const {
  const auto [least, greatest] =
      std::minmax_element(recent_.end() - static_cast<std::ptrdiff_t>(length), recent_.end(),
                          [](const Step& a, const Step& b) { return a.power < b.power; });
  return greatest->power <= least->power * PowerFactor(kSteady);
}

void SteadyNoise::CollectStretch(std::size_t length, Cells& cells) const {
  if (recent_.size() < length || !IsSteady(length)) return;
  double power = 0.0;
  for (std::size_t back = 1; back <= length; ++back) power += recent_[recent_.size() - back].power;
  cells[CellOf(InDb(power / static_cast<double>(length)))] += {1, MeanPowers(length)};
}

/// Of the last steps, and of the noisiest channel in each band.
NoiseBands SteadyNoise::MeanPowers(std::size_t length) const {
  NoiseBands loudest{};
  for (std::size_t channel = 0; channel < samples_.size(); ++channel) {
    for (std::size_t band = 0; band < loudest.size(); ++band) {
      double sum = 0.0;
      for (std::size_t back = 1; back <= length; ++back) {
        sum += recent_[recent_.size() - back].channels[channel][band];
      }
      loudest[band] = std::max(loudest[band], sum / static_cast<double>(length));
    }
  }
  return loudest;
}

/// Of the loudest twentieth of the steps that sound.
double SteadyNoise::LoudLevel() const {
  LevelHistogram levels(kDigitalSilence, 220.0, kCell);
  for (const float level : course_) {
    if (level != kSilent) levels.Add(level);
  }
  return levels.Quantile(0.95);
}

/// Whether noise of this level is what everything else stands on: hardly a step between its first
/// and its last one is quieter. What leads in or fades out lies outside.
bool SteadyNoise::IsBottom(double level, bool countsSilence) const {
  const auto reaches = [level](float step) { return step >= level - 3.0; };
  const auto first = std::find_if(course_.begin(), course_.end(), reaches);
  const auto last = std::find_if(course_.rbegin(), std::make_reverse_iterator(first), reaches);
  std::ptrdiff_t quieter = 0;
  std::ptrdiff_t all = 0;
  for (auto step = first; step != last.base(); ++step) {
    if (*step == kSilent && !countsSilence) continue;
    quieter += *step < level - 6.0;
    ++all;
  }
  return 20 * quieter <= all;
}

/// The cell of the quietest of the stretches that are pauses.
std::optional<int> SteadyNoise::FindPauses(const Cells& cells, bool countsSilence) const {
  const std::optional<int> low = LowCell(cells, std::numeric_limits<int>::min());
  if (!low) return std::nullopt;
  const double loud = LoudLevel();
  // A lead-in that was exported to 16 bits is as good as silent, and says nothing of the pauses;
  // but what is nearly as loud as the programme is the programme.
  if (LevelOf(*low) < std::min(kDither, loud - 60.0)) {
    const std::optional<int> above = LowCell(cells, CellOf(kDither));
    if (above && LevelOf(*above) < loud - 15.0 && IsBottom(LevelOf(*above), countsSilence)) {
      return above;
    }
  }
  return IsBottom(LevelOf(*low), countsSilence) ? low : std::nullopt;
}

std::optional<NoiseBands> SteadyNoise::Finish() {
  Cell sum;
  if (course_.size() < kLong) {
    if (course_.empty() && steps_.Filled() >= steps_.Size() / 2) EndStep();
    if (recent_.empty() || !IsSteady(recent_.size())) return std::nullopt;
    sum = {1, MeanPowers(recent_.size())};
  } else {
    const Cells* cells = &long_;
    std::optional<int> low = FindPauses(long_, false);
    if (!low) {
      cells = &short_;
      low = FindPauses(short_, true);  // where a gate cuts the pauses, only words are steady
    }
    if (!low) return std::nullopt;
    const auto end = cells->upper_bound(CellOf(LevelOf(*low) + kSpread));
    for (auto cell = cells->lower_bound(*low); cell != end; ++cell) sum += cell->second;
  }
  std::ranges::transform(sum.powers, sum.powers.begin(),
                         [&sum](double power) { return InDb(std::max(power / sum.count, 1e-15)); });
  return sum.powers;
}

}  // namespace orvelhost
