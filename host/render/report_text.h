#pragma once

#include <string>

#include "host/render/renderer.h"

namespace orvelhost {

/// The measured levels before, after and their difference, as a table for a terminal. What cannot
/// be measured or compared stands as "-".
std::string FormatLevels(const RenderReport& report);

}  // namespace orvelhost
