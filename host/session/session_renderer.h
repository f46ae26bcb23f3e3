#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "host/session/host.h"

namespace orvelhost {

/// What became of one clip.
struct RenderedClip {
  std::size_t number;            ///< of the clip, from 1
  std::filesystem::path output;  ///< the file that was written, or should have been
  std::string error;             ///< why it was not; empty when it was
  std::vector<std::string> notes;
};

/// Renders every clip of the session as it is set, to a WAV of its file's name in the folder, which
/// is made when there is none. Names that are taken by an earlier clip get a number; a file that
/// stands there is not replaced. What fails leaves no file, and the other clips are rendered.
/// `progress` is called as by `Render`; after it gave false, all that is left fails. Throws
/// AudioError when the folder cannot be made.
std::vector<RenderedClip> RenderSession(const Host& host, const std::filesystem::path& folder,
                                        const std::function<bool(double done)>& progress);

}  // namespace orvelhost
