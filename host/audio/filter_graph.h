#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/audio/audio_block.h"

namespace orvelhost {

/// One filter of libavfilter and its options, both by their names there.
struct FilterSpec {
  std::string filter;
  std::map<std::string, std::string> options;

  friend bool operator==(const FilterSpec&, const FilterSpec&) = default;
};

/// A chain of filters that blocks of audio go through. The samples that come out do not depend on
/// how the input was cut into blocks. Without filters they come out as they went in.
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
  /// Tells that no more blocks follow, which lets out what the filters still hold.
  void Finish();
  /// Stores the next block that is ready; false when more has to be pushed first, or all is out.
  bool Pull(AudioBlock& block);

 private:
  class Graph;
  std::unique_ptr<Graph> graph_;
};

}  // namespace orvelhost
