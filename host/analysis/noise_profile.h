#pragma once

#include <optional>
#include <string>

#include "host/analysis/audio_source.h"
#include "host/analysis/hum.h"
#include "host/analysis/noise_bands.h"
#include "host/analysis/progress.h"

namespace orvelhost {

/// The steady noise of a clip, in the terms of libavfilter's afftdn (noise_type=custom).
struct NoiseProfile {
  double floor;      ///< in dB, to be noise_floor; the filter itself knows -80..-20 only
  NoiseBands bands;  ///< band_noise: in dB from each other, -24..24, lowest first
};

/// Measures the noise in the pauses of a source, or in all of it when it is shorter than 0.6 s,
/// with rumble and `hum` filtered out. None when there is no steady noise, only digital silence, or
/// the source is shorter than 50 ms. Throws AudioError when reading fails, and Cancelled.
std::optional<NoiseProfile> MeasureNoiseProfile(AudioSource& source, const std::optional<Hum>& hum,
                                                const Progress& progress = {});

/// The profile's bands as the text of the option band_noise.
std::string BandNoiseText(const NoiseProfile& profile);

}  // namespace orvelhost
