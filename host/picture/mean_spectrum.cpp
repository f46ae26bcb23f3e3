#include "host/picture/mean_spectrum.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <numeric>

namespace orvelhost {
namespace {

// A quarter of a second at least tells the mains' 50 Hz from 60 Hz.
std::size_t FrameSize(const AudioFormat& format) {
  return std::bit_ceil(static_cast<std::size_t>(format.sampleRate) / 4);
}

constexpr int kBandsPerOctave = 12;
constexpr int kLowestBand = -68;  // 19.7 Hz
constexpr int kHighestBand = 52;  // 20.2 kHz

double FrequencyOf(double band) { return 1000.0 * std::exp2(band / kBandsPerOctave); }

}  // namespace

MeanSpectrum::MeanSpectrum(const AudioFormat& format)
    : format_(format),
      transform_(FrameSize(format)),
      window_(HannWindow(FrameSize(format))),
      channels_(static_cast<std::size_t>(format.channelCount),
                std::vector<double>(FrameSize(format))),
      // The first frame begins half a frame before the stream, so that its start has its full
      // share.
      filled_(FrameSize(format) / 2),
      powers_(FrameSize(format) / 2 + 1),
      windowed_(FrameSize(format)) {}

void MeanSpectrum::Add(const AudioBlock& block) {
  const std::size_t size = window_.size();
  for (std::size_t begin = 0; begin < block.FrameCount();) {
    const std::size_t count = std::min(size - filled_, block.FrameCount() - begin);
    for (std::size_t channel = 0; channel < channels_.size(); ++channel) {
      const auto samples = block.Channel(static_cast<int>(channel)).subspan(begin, count);
      for (std::size_t index = 0; index < count; ++index) {
        const double sample = samples[index];
        channels_[channel][filled_ + index] = sample;
        square_ += sample * sample;
      }
    }
    sampleCount_ += static_cast<double>(count * channels_.size());
    begin += count;
    filled_ += count;
    if (filled_ == size) {
      EndFrame();
    }
  }
}

// Transforms the frame, and begins the next one with its second half.
void MeanSpectrum::EndFrame() {
  for (std::vector<double>& samples : channels_) {
    std::ranges::transform(samples, window_, windowed_.begin(), std::multiplies<>());
    const auto bins = transform_.Transform(windowed_);
    for (std::size_t bin = 0; bin < bins.size(); ++bin) {
      powers_[bin] += std::norm(bins[bin]);
    }
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::fill(std::copy(middle, samples.end(), samples.begin()), samples.end(), 0.0);
  }
  filled_ = window_.size() / 2;
}

std::vector<SpectrumBand> MeanSpectrum::Finish() {
  // Silence follows, until the last samples are through both halves of a frame.
  EndFrame();
  EndFrame();
  // What lies below the upper edge of each bin. A bin stands for as much of the spectrum as lies
  // nearest to it.
  std::vector<double> below(powers_.size());
  std::partial_sum(powers_.begin(), powers_.end(), below.begin());
  // A Hann window weighs neighbouring samples differently, so the scale comes from the whole.
  const double scale = square_ > 0.0 ? square_ / sampleCount_ / below.back() : 0.0;
  const double binWidth =
      static_cast<double>(format_.sampleRate) / static_cast<double>(window_.size());
  const auto powerBelow = [&](double frequency) {
    const double place = std::max(0.0, frequency / binWidth - 0.5);
    const auto bin = std::min(static_cast<std::size_t>(place), below.size() - 2);
    const double part = std::min(1.0, place - static_cast<double>(bin));
    return below[bin] + part * (below[bin + 1] - below[bin]);
  };
  std::vector<SpectrumBand> bands;
  for (int band = kLowestBand; band <= kHighestBand; ++band) {
    const double high = FrequencyOf(band + 0.5);
    if (2.0 * high > format_.sampleRate) {
      break;
    }
    const double power = std::max(0.0, powerBelow(high) - powerBelow(FrequencyOf(band - 0.5)));
    bands.push_back({FrequencyOf(band), 10.0 * std::log10(power * scale)});
  }
  return bands;
}

}  // namespace orvelhost
