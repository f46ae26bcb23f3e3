#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "host/render/renderer.h"

namespace orvelhost {

/// What renders each clip of the session as it is set, to a WAV of its file's name in the folder.
/// Names that are taken by an earlier clip get a number; a file that stands there is not replaced.
/// Waits for what the clips' sections ask to have measured, while `goOn` gives true. The session
/// must outlive the requests.
std::vector<RenderRequest> MakeRequests(Session& session, const std::filesystem::path& folder,
                                        const std::function<bool()>& goOn);

}  // namespace orvelhost
