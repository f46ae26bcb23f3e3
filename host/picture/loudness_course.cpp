#include "host/picture/loudness_course.h"

#include <algorithm>

namespace orvelhost {
namespace {

constexpr unsigned long kHop = 100;         // ms
constexpr unsigned long kMomentary = 400;   // ms
constexpr unsigned long kShortTerm = 3000;  // ms

}  // namespace

LoudnessCourse::LoudnessCourse(const AudioFormat& format)
    : sampleRate_(format.sampleRate),
      hops_(format, kHop / 1000.0),
      isMeasurable_(LoudnessState::IsMeasurable(format)),
      state_(format, EBUR128_MODE_S) {}

void LoudnessCourse::Add(const AudioBlock& block) {
  if (!isMeasurable_) return;
  hops_.Cut(
      block, [&](std::size_t begin, std::size_t count) { state_.Add(block, begin, count); },
      [this] { Measure(); });
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
  return static_cast<double>(hops_.Size()) * static_cast<double>(points_.ItemsPerCell()) /
         sampleRate_;
}

}  // namespace orvelhost
