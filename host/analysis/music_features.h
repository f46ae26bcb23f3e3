#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// How a stretch of music sounds.
struct SoundFeatures {
  static constexpr std::size_t kBands = 20;
  static constexpr std::size_t kTones = 12;

  std::array<float, kBands> bands;  ///< energy in dB of bands from 60 Hz to 10 kHz, ears' way
  std::array<float, kTones> tones;  ///< share of each tone of the octave, 0..1, C first
};

/// A clip's sound over time.
struct MusicFeatures {
  static constexpr int kRate = 22050;             ///< of the mono mix that is looked at
  static constexpr std::size_t kOnsetHop = 256;   ///< of that rate's frames
  static constexpr std::size_t kSoundHop = 1024;  ///< likewise

  double duration = 0.0;              ///< seconds
  std::vector<float> onsets;          ///< how much begins in each kOnsetHop; 0 and above
  std::vector<SoundFeatures> sounds;  ///< each over the kSoundHop that begins at its index
  std::vector<double> beats;  ///< in seconds, as libaubio follows them: with jitter and gaps
};

/// Collects them. They take some 11 MB for an hour.
class MusicListener {
 public:
  explicit MusicListener(const AudioFormat& format);
  ~MusicListener();
  MusicListener(MusicListener&&) noexcept;
  MusicListener& operator=(MusicListener&&) noexcept;

  void Add(const AudioBlock& block);

  /// Call it once, behind the last block.
  MusicFeatures Finish();

 private:
  class Listener;
  std::unique_ptr<Listener> listener_;
};

}  // namespace orvelhost
