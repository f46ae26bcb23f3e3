#include "host/audio/level_meter.h"

#include <cmath>
#include <limits>

#include "host/audio/loudness_state.h"

namespace orvelhost {

class LevelMeter::Meter {
 public:
  explicit Meter(const AudioFormat& format)
      : format_(format),
        state_(format, EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_TRUE_PEAK) {}

  void Add(const AudioBlock& block) {
    state_.Add(block);
    if (format_.channelCount == 2) {
      AddWidth(block.Channel(0), block.Channel(1));
    }
  }

  Levels Measure() const {
    Levels levels{};
    levels.loudness = -std::numeric_limits<double>::infinity();
    if (LoudnessState::IsMeasurable(format_)) {
      ebur128_loudness_global(state_.Get(), &levels.loudness);
      ebur128_loudness_range(state_.Get(), &levels.loudnessRange);
    }
    levels.samplePeak = state_.Peak(ebur128_sample_peak);
    levels.truePeak = state_.Peak(ebur128_true_peak);
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
  LoudnessState state_;
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
