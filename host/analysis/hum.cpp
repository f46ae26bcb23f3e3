#include "host/analysis/hum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <vector>

#include "host/analysis/level_histogram.h"
#include "host/analysis/mono_resampler.h"
#include "host/analysis/spectrum.h"
#include "host/audio/decibels.h"

namespace orvelhost {
namespace {

constexpr int kRate = 2048;  // holds the harmonics, and makes whole powers of two
constexpr std::size_t kSegment = std::size_t{2} * kRate;  // tells tones 1 Hz apart
constexpr std::size_t kHop = kRate / 2;
constexpr std::size_t kTransform = 2 * kSegment;
constexpr double kBinWidth = static_cast<double>(kRate) / kTransform;  // Hz
constexpr double kHighest = 500.0;                                     // Hz
constexpr std::size_t kBinCount = static_cast<std::size_t>(kHighest / kBinWidth) + 32;
constexpr int kHarmonics = 8;
constexpr double kDeviation = 0.3;  // Hz; grids stray by less
constexpr double kChance = 10.0;    // dB by which noise may stand out when it is seen for long
constexpr double kMusic = 14.5;     // dB by which music may stand out

/// Music and voices are away from a tone's place for more than this part of the time.
constexpr double kSteadyPart = 0.3;

constexpr double kInaudible = -110.0;  // dBFS; deeper down the rounding of samples makes tones, too

std::size_t BinOf(double frequency) {
  return static_cast<std::size_t>(std::lround(frequency / kBinWidth));
}

/// How much of a tone's power is in a bin that lies beside its frequency.
double ShareInBin(double frequency, std::size_t bin) {
  const double offset =
      (frequency - static_cast<double>(bin) * kBinWidth) * (static_cast<double>(kSegment) / kRate);
  if (std::abs(offset) < 1e-9) {
    return 1.0;
  }
  const double turn = std::numbers::pi * offset;
  const double amplitude = std::sin(turn) / turn / (1.0 - offset * offset);
  return amplitude * amplitude;
}

/// The levels that each bin keeps up, in dB.
using SteadySpectrum = std::vector<double>;

double Background(const SteadySpectrum& levels, double frequency) {
  std::vector<double> around;
  for (double distance = 2.0; distance <= 6.0; distance += kBinWidth) {
    around.push_back(levels[BinOf(frequency - distance)]);
    around.push_back(levels[BinOf(frequency + distance)]);
  }
  const auto middle = around.begin() + static_cast<std::ptrdiff_t>(around.size() / 2);
  std::ranges::nth_element(around, middle);
  return *middle;
}

/// By how many dB a tone at `frequency` stands above its surroundings; negative beside a tone.
double Prominence(const SteadySpectrum& levels, double frequency) {
  constexpr double kAside = 1.0;  // Hz; nothing is left of a steady tone there
  return levels[BinOf(frequency)] -
         std::max({levels[BinOf(frequency - kAside)], levels[BinOf(frequency + kAside)],
                   Background(levels, frequency)});
}

/// The base frequency near `mains` that explains most of the tones.
double LikelyBase(const SteadySpectrum& levels, double mains) {
  constexpr double kStep = 0.02;
  constexpr double kMost = 20.0;  // dB that one harmonic may bring in, so that none decides alone
  constexpr double kCentring = 0.1;  // but the middle of a strong tone is preferred to its slopes
  double best = mains;
  double bestScore = -1.0;
  for (double base = mains - kDeviation; base <= mains + kDeviation; base += kStep) {
    double score = 0.0;
    for (int harmonic = 1; harmonic <= kHarmonics; ++harmonic) {
      const double prominence = std::max(0.0, Prominence(levels, harmonic * base) - kChance);
      score += std::min(prominence, kMost) + kCentring * prominence;
    }
    if (score > bestScore) {
      best = base;
      bestScore = score;
    }
  }
  return best;
}

}  // namespace

class HumFinder::Finder {
 public:
  explicit Finder(const AudioFormat& format) {
    for (int channel = 0; channel < format.channelCount; ++channel) {
      channels_.emplace_back(format.sampleRate);
    }
  }

  void Add(const AudioBlock& block) {
    for (std::size_t index = 0; index < channels_.size(); ++index) {
      Channel& channel = channels_[index];
      channel.resampler.Add(block.Channel(static_cast<int>(index)), channel.samples);
    }
    while (channels_.front().samples.size() >= kSegment) {
      AddSegment();
    }
  }

  std::optional<Hum> Find() const {
    constexpr int kEnough = 4;
    const Segments& segments = whole_.count >= kEnough ? whole_ : all_;
    if (segments.count == 0) {
      return std::nullopt;
    }
    SteadySpectrum levels;
    for (const LevelHistogram& histogram : segments.histograms) {
      levels.push_back(histogram.Quantile(kSteadyPart));
    }
    std::optional<Hum> hum;
    for (const double mains : {50.0, 60.0}) {
      const std::optional<Hum> found = FindNear(levels, mains, segments.count);
      if (found && (!hum || found->level > hum->level)) {
        hum = found;
      }
    }
    return hum;
  }

 private:
  /// The levels that each bin had in them.
  struct Segments {
    std::vector<LevelHistogram> histograms =
        std::vector<LevelHistogram>(kBinCount, LevelHistogram(kInaudible, 40.0, 0.25));
    int count = 0;

    void Add(const std::vector<double>& powers) {
      for (std::size_t bin = 0; bin < kBinCount; ++bin) {
        histograms[bin].Add(10.0 * std::log10(std::max(powers[bin], 1e-30)));
      }
      ++count;
    }
  };

  struct Channel {
    explicit Channel(int sampleRate) : resampler(sampleRate, kRate) {}

    MonoResampler resampler;
    std::vector<double> samples;
    std::vector<std::complex<double>> lastSpectrum;
  };

  /// Digital silence is no sound of a room: a segment with some of it tells a hum that is less than
  /// it was.
  bool IsCut() const {
    std::size_t silent = 0;
    for (std::size_t i = 0; i < kSegment; ++i) {
      silent += std::ranges::all_of(
          channels_, [i](const Channel& channel) { return std::abs(channel.samples[i]) < 1e-7; });
    }
    return silent > kSegment / 20;
  }

  void AddSegment() {
    constexpr double kSineScale = 2.0 / (kSegment / 2.0) / (kSegment / 2.0);  // to a mean square
    const bool isCut = IsCut();
    std::vector<double> powers(kBinCount);
    std::vector<double> windowed(kSegment);
    for (Channel& channel : channels_) {
      std::ranges::transform(std::span(channel.samples).first(kSegment), window_, windowed.begin(),
                             std::multiplies<>());
      const auto spectrum = transform_.Transform(windowed).first(kBinCount);
      for (std::size_t bin = 0; bin < kBinCount; ++bin) {
        powers[bin] +=
            std::norm(spectrum[bin]) * kSineScale / static_cast<double>(channels_.size());
        if (!channel.lastSpectrum.empty()) {
          const auto turn = std::conj(channel.lastSpectrum[bin]) * spectrum[bin];
          // Of one length each, so that a loud word has no more to say than a pause.
          turns_[bin] += turn / std::max(std::abs(turn), 1e-300);
        }
      }
      channel.lastSpectrum.assign(spectrum.begin(), spectrum.end());
      channel.samples.erase(channel.samples.begin(), channel.samples.begin() + kHop);
    }
    all_.Add(powers);
    if (!isCut) whole_.Add(powers);
  }

  /// `frequency` corrected by how far its phase moves from segment to segment.
  double Refine(double frequency) const {
    constexpr double kHopSeconds = static_cast<double>(kHop) / kRate;
    const std::complex<double> turn = turns_[BinOf(frequency)];
    const double excess =
        std::arg(turn * std::polar(1.0, -2 * std::numbers::pi * frequency * kHopSeconds));
    return frequency + excess / (2 * std::numbers::pi * kHopSeconds);
  }

  /// `base` as its most prominent harmonic has it.
  double RefineBase(const SteadySpectrum& levels, double base) const {
    int clearest = 1;
    for (int harmonic = 2; harmonic <= kHarmonics; ++harmonic) {
      if (Prominence(levels, harmonic * base) > Prominence(levels, clearest * base)) {
        clearest = harmonic;
      }
    }
    return Refine(clearest * base) / clearest;
  }

  std::optional<Hum> FindNear(const SteadySpectrum& levels, double mains, int segmentCount) const {
    constexpr double kAgreement = 0.1;  // Hz between the bases that two harmonics tell
    // What chance lifts above the surroundings shrinks with the number of segments.
    const double least =
        std::max(kMusic, kChance + 12.0 / std::sqrt(static_cast<double>(segmentCount)));
    const double likely = RefineBase(levels, LikelyBase(levels, mains));
    if (std::abs(likely - mains) > kDeviation) {
      return std::nullopt;
    }
    double weightSum = 0.0;
    double weighted = 0.0;
    double power = 0.0;
    int overtones = 0;
    bool hasBase = false;
    for (int harmonic = 1; harmonic <= kHarmonics; ++harmonic) {
      const double prominence = Prominence(levels, harmonic * likely);
      const double frequency = Refine(harmonic * likely);
      if (prominence < least || std::abs(frequency / harmonic - likely) > kAgreement) {
        continue;
      }
      (harmonic == 1 ? hasBase = true : ++overtones);
      const double weight = harmonic * harmonic * std::min(PowerFactor(prominence), 1e3);
      weightSum += weight;
      weighted += weight * frequency / harmonic;
      const std::size_t bin = BinOf(frequency);
      power +=
          std::max(0.0, PowerFactor(levels[bin]) - PowerFactor(Background(levels, frequency))) /
          ShareInBin(frequency, bin);
    }
    if (!hasBase && overtones < 2) {
      return std::nullopt;  // a single tone there may be anything
    }
    return Hum{weighted / weightSum, 10.0 * std::log10(power)};
  }

  std::vector<Channel> channels_;
  Spectrum transform_{kTransform};
  std::vector<double> window_ = HannWindow(kSegment);
  std::vector<std::complex<double>> turns_ = std::vector<std::complex<double>>(kBinCount);
  Segments all_;
  Segments whole_;  // without those that are cut
};

HumFinder::HumFinder(const AudioFormat& format) : finder_(std::make_unique<Finder>(format)) {}
HumFinder::~HumFinder() = default;
HumFinder::HumFinder(HumFinder&&) noexcept = default;
HumFinder& HumFinder::operator=(HumFinder&&) noexcept = default;

void HumFinder::Add(const AudioBlock& block) { finder_->Add(block); }
std::optional<Hum> HumFinder::Find() const { return finder_->Find(); }

}  // namespace orvelhost
