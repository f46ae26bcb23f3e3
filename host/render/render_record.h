#pragma once

#include "host/render/render_batch.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// What became of one file, as JSON: `input`, `output`, `picture`, `status` ("rendered", "planned",
/// "failed" or "stopped"), `error` and `notes`; unless it failed, what was measured, `before` and
/// `after`, with the keys of an analysis, and what was done: `effects` in their order, each with
/// its parameters in physical units, `loudness`, `duration_s` and `pan`. Null is what was not
/// measured or not done.
teskcore::serialization::JSONValue ToJSON(const RenderRequest& request,
                                          const RenderOutcome& outcome);

/// What is done to a clip, for people, a line for each effect.
std::string DescribeChain(const RenderReport& report);

}  // namespace orvelhost
