#include "host/picture/loudness_course.h"

#include <algorithm>
#include <cmath>

namespace orvelhost {
namespace {

constexpr unsigned long kHop = 100;         // ms
constexpr unsigned long kMomentary = 400;   // ms
constexpr unsigned long kShortTerm = 3000;  // ms

}  // namespace

LoudnessCourse::LoudnessCourse(const AudioFormat& format)
    : sampleRate_(format.sampleRate),
      hop_(static_cast<std::size_t>(std::lround(sampleRate_ * kHop / 1000.0))),
      isMeasurable_(LoudnessState::IsMeasurable(format)),
      state_(format, EBUR128_MODE_S) {}

void LoudnessCourse::Add(const AudioBlock& block) {
  for (std::size_t begin = 0; isMeasurable_ && begin < block.FrameCount();) {
    const std::size_t count = std::min(hop_ - filled_, block.FrameCount() - begin);
    state_.Add(block, begin, count);
    begin += count;
    filled_ += count;
    if (filled_ == hop_) {
      filled_ = 0;
      Measure();
    }
  }
}

void LoudnessCourse::Measure() {
  elapsed_ = std::min(elapsed_ + kHop, kShortTerm);
  double momentary = 0.0;
  double shortTerm = 0.0;
  ebur128_loudness_window(state_.Get(), std::min(elapsed_, kMomentary), &momentary);
  ebur128_loudness_window(state_.Get(), elapsed_, &shortTerm);
  points_.Add({momentary, momentary, shortTerm});
}

double LoudnessCourse::SecondsPerPoint() const {
  return static_cast<double>(hop_) * static_cast<double>(points_.ItemsPerCell()) / sampleRate_;
}

}  // namespace orvelhost
