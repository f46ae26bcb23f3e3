#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "host/render/renderer.h"

namespace orvelhost {

/// Why the requests cannot be carried out in one run, in one line; empty when they can. No output,
/// picture or report may be an input of any of them, nor one of the others, whatever links and
/// spellings lead there. An empty `report` is none.
std::string FindFileClash(std::span<const RenderRequest> requests,
                          const std::filesystem::path& report = {});

}  // namespace orvelhost
