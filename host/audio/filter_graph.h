#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// One filter of libavfilter and its options, both by their names there; or, with `branches`,
/// chains that the audio runs through side by side and whose outputs are added.
struct FilterSpec {
  std::string filter;
  std::map<std::string, std::string> options;
  std::int64_t delay = 0;  ///< frames by which the output lags behind the input
  std::int64_t tail = 0;   ///< frames for which the output goes on when the input has ended
  std::vector<std::vector<FilterSpec>> branches = {};

  friend bool operator==(const FilterSpec&, const FilterSpec&) = default;
};

/// The delay and the tail of a whole chain, in frames. Beside one another the longest counts.
std::int64_t DelayOf(const std::vector<FilterSpec>& filters);
std::int64_t TailOf(const std::vector<FilterSpec>& filters);

/// A chain of filters that blocks of audio go through. The samples that come out do not depend on
/// how the input was cut into blocks, and stand at the places where they went in: delays are taken
/// off, and made equal between branches. Behind the input follows the chain's tail. Without filters
/// the samples come out as they went in.
class FilterGraph {
 public:
  /// Throws AudioError when a filter is unknown, refuses an option, or cannot take the format.
  FilterGraph(const AudioFormat& input, const std::vector<FilterSpec>& filters);
  ~FilterGraph();
  FilterGraph(FilterGraph&&) noexcept;
  FilterGraph& operator=(FilterGraph&&) noexcept;

  /// Same sample rate as the input; the filters may change the channels.
  const AudioFormat& OutputFormat() const;

  /// Takes a block of the input's format. Throws AudioError when a filter fails.
  void Push(const AudioBlock& block);
  /// Tells that no more blocks follow, which lets out what the filters still hold and the tail.
  void Finish();
  /// Stores the next block that is ready; false when more has to be pushed first, or all is out.
  bool Pull(AudioBlock& block);

 private:
  class Graph;
  std::unique_ptr<Graph> graph_;
};

}  // namespace orvelhost
