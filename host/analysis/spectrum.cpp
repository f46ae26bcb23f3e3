#include "host/analysis/spectrum.h"

#include <cassert>
#include <cmath>
#include <new>
#include <numbers>

#include "host/audio/ffmpeg.h"

namespace orvelhost {
namespace {

/// Aligned as the transform wants it.
using Complexes = std::unique_ptr<std::complex<double>[], ffmpeg::FreeMemory>;

Complexes MakeComplexes(std::size_t count) {
  Complexes made(
      static_cast<std::complex<double>*>(av_calloc(count, sizeof(std::complex<double>))));
  if (!made) {
    throw std::bad_alloc();
  }
  return made;
}

}  // namespace

class Spectrum::Transformer {
 public:
  explicit Transformer(std::size_t size)
      : size_(size), in_(MakeComplexes(size)), out_(MakeComplexes(size)) {
    const double scale = 1.0;
    AVTXContext* context = nullptr;
    ffmpeg::Check(
        av_tx_init(&context, &run_, AV_TX_DOUBLE_FFT, 0, static_cast<int>(size), &scale, 0),
        "cannot transform into a spectrum");
    context_.reset(context);
  }

  std::size_t Size() const { return size_; }

  std::span<const std::complex<double>> Transform(std::span<const double> samples) {
    assert(samples.size() <= size_);
    for (std::size_t index = 0; index < size_; ++index) {
      in_[index] = index < samples.size() ? samples[index] : 0.0;
    }
    run_(context_.get(), out_.get(), in_.get(), sizeof(std::complex<double>));
    return {out_.get(), size_ / 2 + 1};
  }

 private:
  std::size_t size_;
  Complexes in_;
  Complexes out_;
  std::unique_ptr<AVTXContext, ffmpeg::FreeByAddress<av_tx_uninit>> context_;
  av_tx_fn run_ = nullptr;
};

Spectrum::Spectrum(std::size_t size) : transformer_(std::make_unique<Transformer>(size)) {}
Spectrum::~Spectrum() = default;
Spectrum::Spectrum(Spectrum&&) noexcept = default;
Spectrum& Spectrum::operator=(Spectrum&&) noexcept = default;

std::size_t Spectrum::Size() const { return transformer_->Size(); }

std::span<const std::complex<double>> Spectrum::Transform(std::span<const double> samples) {
  return transformer_->Transform(samples);
}

std::vector<double> HannWindow(std::size_t size) {
  std::vector<double> window(size);
  for (std::size_t index = 0; index < size; ++index) {
    window[index] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(index) /
                                         static_cast<double>(size));
  }
  return window;
}

}  // namespace orvelhost
