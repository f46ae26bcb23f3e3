#include "host/analysis/music_features.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <span>
#include <utility>

#include <aubio/aubio.h>

#include "host/analysis/mono_resampler.h"
#include "host/analysis/spectrum.h"

namespace orvelhost {
namespace {

constexpr int kRate = MusicFeatures::kRate;
constexpr std::size_t kOnsetHop = MusicFeatures::kOnsetHop;
constexpr std::size_t kSoundHop = MusicFeatures::kSoundHop;
constexpr std::size_t kOnsetWindow = 1024;
constexpr std::size_t kToneWindow = 4096;  // tells semitones apart from 100 Hz on
constexpr std::size_t kBands = SoundFeatures::kBands;

struct FreeTempo {
  void operator()(aubio_tempo_t* tempo) const { del_aubio_tempo(tempo); }
};
struct FreeVector {
  void operator()(fvec_t* vector) const { del_fvec(vector); }
};

/// The band that each bin of the onset window belongs to; kBands for none. The bands are equally
/// wide on the mel scale (O'Shaughnessy, Speech Communication, 1987).
std::vector<std::size_t> BandOfBins() {
  const auto mel = [](double frequency) { return std::log10(1.0 + frequency / 700.0); };
  constexpr double kLowest = 60.0;
  constexpr double kHighest = 10000.0;
  std::vector<std::size_t> bands;
  for (std::size_t bin = 0; bin <= kOnsetWindow / 2; ++bin) {
    const double frequency = static_cast<double>(bin) * kRate / kOnsetWindow;
    const double place = (mel(frequency) - mel(kLowest)) / (mel(kHighest) - mel(kLowest));
    bands.push_back(place < 0.0 || place >= 1.0
                        ? kBands
                        : static_cast<std::size_t>(place * static_cast<double>(kBands)));
  }
  return bands;
}

/// The tone of the octave that each bin of the tone window belongs to; kTones for none.
std::vector<std::size_t> ToneOfBins() {
  constexpr double kLowest = 100.0;
  constexpr double kHighest = 4000.0;
  constexpr double kMiddleC = 261.6256;
  std::vector<std::size_t> tones;
  for (std::size_t bin = 0; bin <= kToneWindow / 2; ++bin) {
    const double frequency = static_cast<double>(bin) * kRate / kToneWindow;
    if (frequency < kLowest || frequency > kHighest) {
      tones.push_back(SoundFeatures::kTones);
    } else {
      const long semitone = std::lround(12.0 * std::log2(frequency / kMiddleC));
      tones.push_back(static_cast<std::size_t>(((semitone % 12) + 12) % 12));
    }
  }
  return tones;
}

}  // namespace

class MusicListener::Listener {
 public:
  explicit Listener(const AudioFormat& format)
      : sampleRate_(format.sampleRate),
        resampler_(format.sampleRate, kRate),
        tempo_(new_aubio_tempo("default", 2 * kOnsetHop, kOnsetHop, kRate)),
        hop_(new_fvec(kOnsetHop)),
        beat_(new_fvec(1)) {
    if (!tempo_ || !hop_ || !beat_) {
      throw std::bad_alloc();
    }
    // Half a window of silence, so that each window has its hop in the middle.
    samples_.resize(kToneWindow / 2);
  }

  void Add(const AudioBlock& block) {
    mix_.assign(block.FrameCount(), 0.0f);
    const float share = 1.0f / static_cast<float>(block.ChannelCount());
    for (int channel = 0; channel < block.ChannelCount(); ++channel) {
      std::ranges::transform(block.Channel(channel), mix_, mix_.begin(),
                             [share](float sample, float sum) { return sum + share * sample; });
    }
    frameCount_ += static_cast<double>(block.FrameCount());
    resampler_.Add(mix_, samples_);
    Process();
  }

  MusicFeatures Finish() {
    samples_.resize(samples_.size() + kToneWindow / 2 + kSoundHop);
    Process();
    features_.duration = frameCount_ / sampleRate_;
    return std::move(features_);
  }

 private:
  void Process() {
    std::size_t begin = 0;
    while (samples_.size() - begin >= kToneWindow + kSoundHop) {
      const std::span<const double> around = std::span(samples_).subspan(begin);
      AddSound(around);
      begin += kSoundHop;
    }
    samples_.erase(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(begin));
  }

  /// `around` begins half a tone window ahead of the hop.
  void AddSound(std::span<const double> around) {
    constexpr std::size_t kParts = kSoundHop / kOnsetHop;
    std::array<double, kBands> sums{};
    for (std::size_t part = 0; part < kParts; ++part) {
      const std::size_t middle = kToneWindow / 2 + part * kOnsetHop;
      FollowBeat(around.subspan(middle, kOnsetHop));
      AddOnset(around.subspan(middle + kOnsetHop / 2 - kOnsetWindow / 2, kOnsetWindow), sums);
    }
    SoundFeatures& sound = features_.sounds.emplace_back();
    std::ranges::transform(sums, sound.bands.begin(), [](double energy) {
      return static_cast<float>(10.0 * std::log10(energy / kParts + kFaint));
    });
    AddTones(around.first(kToneWindow), sound);
  }

  void FollowBeat(std::span<const double> hop) {
    std::ranges::transform(hop, hop_->data,
                           [](double sample) { return static_cast<smpl_t>(sample); });
    aubio_tempo_do(tempo_.get(), hop_.get(), beat_.get());
    constexpr double kClosest = 0.15;  // seconds; 400 beats a minute
    const double time = static_cast<double>(aubio_tempo_get_last(tempo_.get())) / kRate;
    if (beat_->data[0] != 0 &&
        (features_.beats.empty() || time > features_.beats.back() + kClosest)) {
      features_.beats.push_back(time);
    }
  }

  void AddOnset(std::span<const double> window, std::array<double, kBands>& sums) {
    std::array<double, kBands> energies{};
    windowed_.resize(kOnsetWindow);
    std::ranges::transform(window, onsetShape_, windowed_.begin(), std::multiplies<>());
    const auto spectrum = onsetTransform_.Transform(windowed_);
    for (std::size_t bin = 0; bin < spectrum.size(); ++bin) {
      if (bandOfBin_[bin] < kBands) {
        energies[bandOfBin_[bin]] += std::norm(spectrum[bin]) / (kOnsetWindow * kOnsetWindow);
      }
    }
    double onset = 0.0;
    for (std::size_t band = 0; band < kBands; ++band) {
      sums[band] += energies[band];
      const double level = std::log10(energies[band] + kFaint);
      onset += std::max(0.0, level - lastLevels_[band]);
      lastLevels_[band] = level;
    }
    features_.onsets.push_back(features_.onsets.empty() ? 0.0f : static_cast<float>(onset));
  }

  void AddTones(std::span<const double> window, SoundFeatures& sound) {
    windowed_.resize(kToneWindow);
    std::ranges::transform(window, toneShape_, windowed_.begin(), std::multiplies<>());
    const auto spectrum = toneTransform_.Transform(windowed_);
    std::array<double, SoundFeatures::kTones> strengths{};
    double total = 1e-6;
    for (std::size_t bin = 0; bin < spectrum.size(); ++bin) {
      if (toneOfBin_[bin] < strengths.size()) {
        const double strength = std::abs(spectrum[bin]) / kToneWindow;
        strengths[toneOfBin_[bin]] += strength;
        total += strength;
      }
    }
    std::ranges::transform(strengths, sound.tones.begin(), [total](double strength) {
      return static_cast<float>(strength / total);
    });
  }

  static constexpr double kFaint = 1e-9;  // an energy that no one hears beside music

  double sampleRate_;
  double frameCount_ = 0.0;
  MonoResampler resampler_;
  std::unique_ptr<aubio_tempo_t, FreeTempo> tempo_;
  std::unique_ptr<fvec_t, FreeVector> hop_;
  std::unique_ptr<fvec_t, FreeVector> beat_;
  std::vector<float> mix_;
  std::vector<double> samples_;
  std::vector<double> windowed_;
  std::vector<double> onsetShape_ = HannWindow(kOnsetWindow);
  std::vector<double> toneShape_ = HannWindow(kToneWindow);
  std::vector<std::size_t> bandOfBin_ = BandOfBins();
  std::vector<std::size_t> toneOfBin_ = ToneOfBins();
  Spectrum onsetTransform_{kOnsetWindow};
  Spectrum toneTransform_{kToneWindow};
  std::array<double, kBands> lastLevels_{};
  MusicFeatures features_;
};

MusicListener::MusicListener(const AudioFormat& format)
    : listener_(std::make_unique<Listener>(format)) {}
MusicListener::~MusicListener() = default;
MusicListener::MusicListener(MusicListener&&) noexcept = default;
MusicListener& MusicListener::operator=(MusicListener&&) noexcept = default;

void MusicListener::Add(const AudioBlock& block) { listener_->Add(block); }
MusicFeatures MusicListener::Finish() { return listener_->Finish(); }

}  // namespace orvelhost
