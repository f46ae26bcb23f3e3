#pragma once

#include <vector>

#include "host/analysis/spectrum.h"
#include "host/picture/sound_portrait.h"

namespace orvelhost {

/// The spectrum of a stream over its whole time.
class MeanSpectrum {
 public:
  explicit MeanSpectrum(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// Ends the stream. Bands of a twelfth of an octave, 1 kHz in the middle of one, from 20 Hz to
  /// 20 kHz or as far as the sample rate reaches. A band holds all that lies in it, the mean of the
  /// channels: pink noise is level, and all bands together make the sound's mean square.
  std::vector<SpectrumBand> Finish();

 private:
  void EndFrame();

  AudioFormat format_;
  Spectrum transform_;
  std::vector<double> window_;
  std::vector<std::vector<double>> channels_;  // the samples of the frame that is being filled
  std::size_t filled_;
  std::vector<double> powers_;  // of the bins, not scaled
  double square_ = 0.0;         // of all samples, summed
  double sampleCount_ = 0.0;
  std::vector<double> windowed_;
};

}  // namespace orvelhost
