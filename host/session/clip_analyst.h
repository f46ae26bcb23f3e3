#pragma once

#include <filesystem>
#include <memory>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/session/clip.h"

namespace orvelhost {

/// Measures clips on a thread of its own, one after another, and keeps what it found by content: a
/// copy of a recording is not measured again. All calls and all changes of clips happen on the main
/// thread, to whose event loop results are posted.
class ClipAnalyst {
 public:
  ClipAnalyst();
  /// Ends what is under way; no clip is told any more.
  ~ClipAnalyst();
  ClipAnalyst(const ClipAnalyst&) = delete;
  ClipAnalyst& operator=(const ClipAnalyst&) = delete;

  /// Becomes the measurer of the clip, whose sound stands in this file. What fails leaves the clip
  /// without a measurement. The analyst must outlive the clip's use.
  void Serve(const boost::intrusive_ptr<Clip>& clip, const std::filesystem::path& path);

  /// Ends the clip's measurement at the next block of audio, and tells the clip at once.
  void Cancel(const boost::intrusive_ptr<Clip>& clip);

  /// How far the clip's measurement has come, 0..1; -1 when none is under way, or nobody knows.
  double Done(const boost::intrusive_ptr<Clip>& clip) const;

 private:
  class Worker;
  std::shared_ptr<Worker> worker_;
};

}  // namespace orvelhost
