#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace orvelhost {

/// Fourier transforms of real signals of one length.
class Spectrum {
 public:
  /// `size` is even; powers of two are fast.
  explicit Spectrum(std::size_t size);
  ~Spectrum();
  Spectrum(Spectrum&&) noexcept;
  Spectrum& operator=(Spectrum&&) noexcept;

  std::size_t Size() const;

  /// The bins 0..size/2, not scaled, of `samples`, which are taken as followed by zeros when they
  /// are fewer than `size`. Valid until the next call.
  std::span<const std::complex<double>> Transform(std::span<const double> samples);

 private:
  class Transformer;
  std::unique_ptr<Transformer> transformer_;
};

/// The window of Hann, as it repeats with `size`.
std::vector<double> HannWindow(std::size_t size);

}  // namespace orvelhost
