#pragma once

#include <vector>

#include "host/analysis/audio_source.h"
#include "host/audio/filter_graph.h"

namespace orvelhost {

/// A source seen through filters.
class FilteredSource : public AudioSource {
 public:
  /// `source` must outlive it. Throws AudioError as FilterGraph does.
  FilteredSource(AudioSource& source, const std::vector<FilterSpec>& filters)
      : source_(source), graph_(source.Format(), filters) {}

  const AudioFormat& Format() const override { return graph_.OutputFormat(); }
  std::int64_t StatedFrameCount() const override { return source_.StatedFrameCount(); }

  bool Read(AudioBlock& block) override {
    while (!graph_.Pull(block)) {
      if (finished_) {
        return false;
      }
      if (AudioBlock input; source_.Read(input)) {
        graph_.Push(input);
      } else {
        graph_.Finish();
        finished_ = true;
      }
    }
    return true;
  }

 private:
  AudioSource& source_;
  FilterGraph graph_;
  bool finished_ = false;
};

}  // namespace orvelhost
