#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "host/audio/audio_block.h"
#include "host/audio/filter_graph.h"

namespace orvelhost {

/// A chain of filters that can be changed while audio runs through it: for a player, which plays a
/// clip while its controls are moved. None of the programs here plays. A running filter is never
/// touched, as its options step at the borders of its frames. A new graph is brought up on the last
/// stretch of input instead, and then crossfaded into; as graphs put each sample at its place, the
/// two agree to the sample wherever they do not differ in sound.
///
/// The samples do not depend on how the input was cut into blocks, but for the place of a change:
/// the crossfade begins with the first sample that has not been pulled. One thread at a time.
class LiveChain {
 public:
  /// Throws AudioError as FilterGraph does.
  LiveChain(const AudioFormat& format, const std::vector<FilterSpec>& filters);

  /// Same rate as the input. Filters that would give other channels than the first ones did cannot
  /// be changed to.
  const AudioFormat& OutputFormat() const { return voices_.front().graph.OutputFormat(); }

  /// Goes over to other filters. Throws AudioError, with the old ones going on, when these cannot
  /// run or would give other channels.
  void Change(const std::vector<FilterSpec>& filters);

  // As with FilterGraph.
  void Push(const AudioBlock& block);
  void Finish();
  bool Pull(AudioBlock& block);

 private:
  /// A graph and what has come out of it and was not pulled.
  struct Voice {
    FilterGraph graph;
    std::vector<std::deque<float>> ready;  // a row per channel
    std::size_t fadeDone;                  // frames; a voice that has done them all is heard alone
    std::int64_t early;  // frames at its beginning that had been pulled before it came
  };

  void Drain(Voice& voice);
  void Remember(const AudioBlock& block);

  AudioFormat format_;
  std::size_t fade_;                // frames
  std::vector<Voice> voices_;       // each is faded in over those before it
  std::deque<AudioBlock> history_;  // the input, as far back as a new graph may have to know it
  std::int64_t historyBegin_ = 0;   // the place of its first frame in the input
  std::int64_t pulled_ = 0;
  bool finished_ = false;
};

}  // namespace orvelhost
