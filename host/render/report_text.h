#pragma once

#include <string>

#include "host/render/renderer.h"

namespace orvelhost {

/// The measured levels before, after and their difference, as a table for a terminal. What cannot
/// be measured or compared stands as "-". Noise and hum are told where they were looked for and
/// found.
std::string FormatLevels(const RenderReport& report);

}  // namespace orvelhost
