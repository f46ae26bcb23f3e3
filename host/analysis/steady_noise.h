#pragma once

#include <deque>
#include <map>
#include <optional>
#include <vector>

#include "host/analysis/noise_bands.h"
#include "host/audio/audio_block.h"
#include "host/audio/window_cutter.h"

namespace orvelhost {

/// Finds the steady noise of a stream in the stretches of 0.6 s, or else of 0.3 s, that stay level
/// and below which hardly anything lies: in its pauses, and neither in fades nor in long vowels. A
/// drone that never pauses cannot be told from noise.
class SteadyNoise {
 public:
  explicit SteadyNoise(const AudioFormat& format);

  void Add(const AudioBlock& block);

  /// In dB, the mean square that white noise of each band's density would have; of several channels
  /// that of the noisiest. None when no stretch is steady or there is only silence. A stream of
  /// less than 0.6 s has to be steady as a whole, and one of less than 0.1 s to have 50 ms. To be
  /// called once, at the end.
  std::optional<NoiseBands> Finish();

 private:
  struct Step {
    double power;
    std::vector<NoiseBands> channels;
  };
  /// Steady stretches of about one level.
  struct Cell {
    int count = 0;
    NoiseBands powers{};  // their sum

    Cell& operator+=(const Cell& other);
  };
  using Cells = std::map<int, Cell>;  // by level

  Step TakeStep();
  void EndStep();
  bool IsSteady(std::size_t length) const;
  void CollectStretch(std::size_t length, Cells& cells) const;
  NoiseBands MeanPowers(std::size_t length) const;
  double LoudLevel() const;
  bool IsBottom(double level, bool countsSilence) const;
  std::optional<int> FindPauses(const Cells& cells, bool countsSilence) const;

  WindowCutter steps_;
  NoiseBandMeter bands_;
  std::vector<std::vector<double>> samples_;  // of the step that is not whole yet
  std::deque<Step> recent_;
  std::vector<float> course_;  // the level of each step; of a silent one minus infinity
  Cells long_;
  Cells short_;
};

}  // namespace orvelhost
