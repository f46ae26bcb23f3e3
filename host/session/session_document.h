#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/audio/audio_block.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// Why a session cannot be read, in one line for a person.
class SessionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a session keeps of a clip.
struct ClipRecord {
  std::filesystem::path source;  ///< the audio file, absolute
  AudioFormat format;
  orvel::ClipType type = orvel::type_not_set;
  std::string modeID;
  orvel::Guid preset;  ///< null: none
  /// The normalized values of each section, by parameter id.
  std::map<std::string, std::vector<float>> sections;

  friend bool operator==(const ClipRecord&, const ClipRecord&) = default;
};

/// A session as it is saved: a value. The file, "*.orvelsession", is one JSON object with "format",
/// "version", "clips", "selected" (indices of clips) and "properties". A clip has "source", a path
/// from the file's folder; "audio", its rate, channels and speakers; and "properties", which hold
/// the clip type, the mode, the preset and the values of the sections under the library's keys.
struct SessionDocument {
  std::vector<ClipRecord> clips;
  std::vector<std::size_t> selected;  ///< indices into `clips`, ascending
  std::vector<orvel::ConfigPreset> configurations;
};

/// The file's path from the root without "." and "..", which lead behind a link where the link
/// leads.
std::filesystem::path AbsolutePath(const std::filesystem::path& file);

/// The text of a session whose file stands in `folder`, which is absolute.
std::string FormatSession(const SessionDocument& document, const std::filesystem::path& folder);

/// Raises SessionError for a text that is no session, is damaged, or comes from a newer version of
/// the format.
SessionDocument ParseSession(const std::string& text, const std::filesystem::path& folder);

/// The same with a file, which is replaced whole or not at all; what a process that was killed
/// while it saved has left beside the file is cleared. Messages name the file. Raise SessionError,
/// and AudioError when it cannot be written.
void WriteSession(const SessionDocument& document, const std::filesystem::path& file);
SessionDocument ReadSession(const std::filesystem::path& file);

/// Raises SessionError for a file that is there and cannot be read as a session: it may hold what
/// cannot be made anew.
void CheckCanBeReplaced(const std::filesystem::path& file);

}  // namespace orvelhost
