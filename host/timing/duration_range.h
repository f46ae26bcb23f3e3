#pragma once

namespace orvelhost {

/// The durations that a clip can be given, in seconds.
struct DurationRange {
  double least;
  double greatest;
};

}  // namespace orvelhost
