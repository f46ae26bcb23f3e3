#include "host/audio/level_meter.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <new>
#include <vector>

#include <ebur128.h>

extern "C" {
#include <libavutil/channel_layout.h>
}

namespace orvelhost {
namespace {

struct FreeState {
  void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

// The weights of the channels (ITU-R BS.1770-4): surrounds count more, and low frequency effects
// not at all. The measuring library's own guess goes by the number of channels alone.
void SetChannels(ebur128_state& state, const AudioFormat& format) {
  constexpr std::uint64_t kEffects = AV_CH_LOW_FREQUENCY | AV_CH_LOW_FREQUENCY_2;
  constexpr std::uint64_t kSurrounds = AV_CH_BACK_LEFT | AV_CH_BACK_RIGHT | AV_CH_BACK_CENTER |
                                       AV_CH_SIDE_LEFT | AV_CH_SIDE_RIGHT | AV_CH_TOP_BACK_LEFT |
                                       AV_CH_TOP_BACK_CENTER | AV_CH_TOP_BACK_RIGHT |
                                       AV_CH_SURROUND_DIRECT_LEFT | AV_CH_SURROUND_DIRECT_RIGHT;
  constexpr unsigned kUsual = 6;  // up to 5.1 the guess is good where nothing else is known
  const auto count = static_cast<unsigned>(format.channelCount);
  if (count < 2 || (format.speakers == 0 && count <= kUsual)) return;
  std::uint64_t speakers = format.speakers;
  for (unsigned channel = 0; channel < count; ++channel) {
    const std::uint64_t speaker = speakers & (~speakers + 1);  // the lowest that is left
    speakers &= ~speaker;
    int weight = EBUR128_LEFT;
    if ((speaker & kEffects) != 0) weight = EBUR128_UNUSED;
    if ((speaker & kSurrounds) != 0) weight = EBUR128_LEFT_SURROUND;
    ebur128_set_channel(&state, channel, weight);
  }
}

// The weighting's shelf turns at 1681.97 Hz (BS.1770-4, Annex 1, by its coefficients for 48 kHz).
// Sampled at less than twice that its filter is not stable.
constexpr int kLeastRate = 3364;  // Hz

double AmplitudeInDb(double amplitude) { return 20.0 * std::log10(amplitude); }

}  // namespace

class LevelMeter::Meter {
 public:
  explicit Meter(const AudioFormat& format)
      : format_(format),
        state_(ebur128_init(static_cast<unsigned>(format.channelCount),
                            static_cast<unsigned long>(format.sampleRate),
                            EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_TRUE_PEAK)) {
    if (!state_) {
      throw std::bad_alloc();
    }
    SetChannels(*state_, format);
  }

  void Add(const AudioBlock& block) {
    assert(block.Format() == format_);
    const std::size_t channels = static_cast<std::size_t>(format_.channelCount);
    interleaved_.resize(block.FrameCount() * channels);
    for (int channel = 0; channel < format_.channelCount; ++channel) {
      std::size_t index = static_cast<std::size_t>(channel);
      for (const float sample : block.Channel(channel)) {
        interleaved_[index] = sample;
        index += channels;
      }
    }
    if (ebur128_add_frames_float(state_.get(), interleaved_.data(), block.FrameCount()) !=
        EBUR128_SUCCESS) {
      throw std::bad_alloc();  // the one way in which it fails
    }
    if (format_.channelCount == 2) {
      AddWidth(block.Channel(0), block.Channel(1));
    }
  }

  Levels Measure() const {
    Levels levels{};
    levels.loudness = -std::numeric_limits<double>::infinity();
    if (format_.sampleRate >= kLeastRate) {
      ebur128_loudness_global(state_.get(), &levels.loudness);
      ebur128_loudness_range(state_.get(), &levels.loudnessRange);
    }
    double samplePeak = 0.0;
    double truePeak = 0.0;
    for (unsigned channel = 0; channel < state_->channels; ++channel) {
      double peak = 0.0;
      ebur128_sample_peak(state_.get(), channel, &peak);
      samplePeak = std::max(samplePeak, peak);
      ebur128_true_peak(state_.get(), channel, &peak);
      truePeak = std::max(truePeak, peak);
    }
    levels.samplePeak = AmplitudeInDb(samplePeak);
    levels.truePeak = AmplitudeInDb(truePeak);
    if (format_.channelCount == 2) {
      levels.width = sideEnergy_ > 0.0 ? 10.0 * std::log10(sideEnergy_ / midEnergy_)
                                       : -std::numeric_limits<double>::infinity();
    }
    return levels;
  }

 private:
  void AddWidth(std::span<const float> left, std::span<const float> right) {
    for (std::size_t frame = 0; frame < left.size(); ++frame) {
      const double mid = (static_cast<double>(left[frame]) + right[frame]) / 2;
      const double side = (static_cast<double>(left[frame]) - right[frame]) / 2;
      midEnergy_ += mid * mid;
      sideEnergy_ += side * side;
    }
  }

  AudioFormat format_;
  std::unique_ptr<ebur128_state, FreeState> state_;
  std::vector<float> interleaved_;
  double midEnergy_ = 0.0;
  double sideEnergy_ = 0.0;
};

LevelMeter::LevelMeter(const AudioFormat& format) : meter_(std::make_unique<Meter>(format)) {}
LevelMeter::~LevelMeter() = default;
LevelMeter::LevelMeter(LevelMeter&&) noexcept = default;
LevelMeter& LevelMeter::operator=(LevelMeter&&) noexcept = default;

void LevelMeter::Add(const AudioBlock& block) { meter_->Add(block); }
Levels LevelMeter::Measure() const { return meter_->Measure(); }

}  // namespace orvelhost
