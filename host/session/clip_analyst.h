#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/analysis/analysis_cache.h"
#include "host/session/clip.h"

namespace orvelhost {

/// Measures clips on a thread of its own, one after another. What it found is kept by content: a
/// copy of a recording is not measured again. All calls and all changes of clips happen on the main
/// thread.
class ClipAnalyst {
 public:
  /// Results are posted to `loop`, which is the main thread's. The cache must outlive the analyst.
  ClipAnalyst(AnalysisCache& cache, const boost::intrusive_ptr<orvel::AsyncEventLoopAdaptor>& loop);
  /// Cancels what is under way.
  ~ClipAnalyst();
  ClipAnalyst(const ClipAnalyst&) = delete;
  ClipAnalyst& operator=(const ClipAnalyst&) = delete;

  /// Becomes the measurer of the clip, whose sound stands in this file. What fails leaves the clip
  /// as it was before. Once the analyst has ended, all fails.
  void Serve(const boost::intrusive_ptr<Clip>& clip, const std::filesystem::path& path);

  /// Ends the clip's measurement at the next block of audio, and tells the clip at once.
  void Cancel(const boost::intrusive_ptr<Clip>& clip);

  /// How far the clip's measurement has come, 0..1; -1 when none is under way, or nobody knows.
  double Done(const boost::intrusive_ptr<Clip>& clip) const;

  /// Whether the measurement of any clip is under way.
  bool IsBusy() const;

  /// While it is, waits for a result that waits in the loop. False when `goOn`, which is asked
  /// several times a second, gave false before.
  bool Wait(const std::function<bool()>& goOn) const;

 private:
  class Worker;
  std::shared_ptr<Worker> worker_;
};

}  // namespace orvelhost
