#pragma once

#include <cstdint>
#include <string>

#include <boost/function.hpp>

#include "orvel/core/export.h"

namespace teskcore::debug {

/// Receives one trace.
using TraceSink =
    boost::function<void(const std::string& channel, int level, const std::string& text)>;

/// Whether traces of `level` go out on `channel`; `byDefault` answers for a channel that nobody has
/// set. On true, the traces that follow on this thread belong to that channel and level.
ORVEL_EXPORT bool TraceEnabled(const std::string& channel, int level, bool byDefault);

/// Sends `text` to the sink under the channel and level for which `TraceEnabled` answered true last
/// on this thread; drops it before the first such answer.
ORVEL_EXPORT void Trace(const std::string& text);

/// Grows whenever a channel's setting changes, so that an answer of `TraceEnabled` can be kept
/// until then.
ORVEL_EXPORT std::uint64_t TraceChangeCount();

/// Lets the levels up to `level` out on `channel`; 0 silences it.
ORVEL_EXPORT void SetTraceLevel(const std::string& channel, int level);

/// Replaces the sink; an empty one brings back the default, which writes a line to standard error.
ORVEL_EXPORT void SetTraceSink(const TraceSink& sink);

}  // namespace teskcore::debug

namespace orvel {
using teskcore::debug::Trace;
using teskcore::debug::TraceChangeCount;
using teskcore::debug::TraceEnabled;
}  // namespace orvel
