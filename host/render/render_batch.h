#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/render/renderer.h"

namespace orvelhost {

/// What became of one render of several.
struct RenderOutcome {
  enum Status {
    kStopped,  ///< before its end, or before it was begun
    kFailed,
    kDone,  ///< `report` says what was done, or would be
  };
  Status status = kStopped;
  RenderReport report;
  std::string error;  ///< why it is not done, in one line
};

/// Who is told how several renders come on; each call is on the main thread, and may be empty.
struct BatchListener {
  /// An outcome, in the order of the requests, as soon as it and all before it are there.
  std::function<void(std::size_t index, const RenderOutcome& outcome)> finished;
  /// Some ten times a second, with the share of each request that is done, 0..1, or -1 when it is
  /// under way and nobody knows; false stops all.
  std::function<bool(const std::vector<double>& shares)> progress;
};

/// Carries out the requests on `jobCount` (1 and more) threads, each taking one after another;
/// their own progress functions are not called. The files that come out do not depend on
/// `jobCount`. Main thread.
std::vector<RenderOutcome> RenderBatch(const Host& host, const std::vector<RenderRequest>& requests,
                                       int jobCount, const BatchListener& listener);

}  // namespace orvelhost
