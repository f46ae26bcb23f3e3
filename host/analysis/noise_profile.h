#pragma once

#include <array>
#include <optional>
#include <string>

#include "host/analysis/audio_source.h"
#include "host/analysis/hum.h"
#include "host/analysis/progress.h"

namespace orvelhost {

/// The steady noise of a clip, in the terms of libavfilter's afftdn (noise_type=custom).
struct NoiseProfile {
  static constexpr std::size_t kBandCount = 15;

  double floor;                          ///< noise_floor, in dB, -80..-20
  std::array<double, kBandCount> bands;  ///< band_noise: dB above the floor, -24..24, lowest first
};

/// Measures the noise in the quietest 0.6 s of a source, or in all of it when it is shorter, with
/// rumble and `hum` filtered out. None when even that filtered stretch is digital silence, or the
/// source is shorter than 50 ms. Throws AudioError when reading fails, and Cancelled.
std::optional<NoiseProfile> MeasureNoiseProfile(AudioSource& source, const std::optional<Hum>& hum,
                                                const Progress& progress = {});

/// The profile's bands as the text of the option band_noise.
std::string BandNoiseText(const NoiseProfile& profile);

}  // namespace orvelhost
