#pragma once

#include <filesystem>
#include <string>

#include "host/audio/audio_block.h"

namespace orvelhost::testing {

/// Writes `block` with an encoder of the FFmpeg libraries into the container that the path's ending
/// names, with a short grey film beside it on demand. Throws std::runtime_error when that fails, as
/// for an encoder that these libraries lack.
void Encode(const std::filesystem::path& path, const std::string& encoder, const AudioBlock& block,
            bool withFilm = false);

}  // namespace orvelhost::testing
