#include "host/audio/audio_error.h"

#include <cstdio>
#include <system_error>

namespace orvelhost {

AudioError::AudioError(const std::string& task, const std::filesystem::path& file,
                       const std::string& cause)
    : AudioError("cannot " + task + " " + Quoted(file) + ": " + cause) {}

AudioError::AudioError(const std::string& task, const std::filesystem::path& file, int cause)
    : AudioError(task, file, std::generic_category().message(cause)) {}

std::string Printable(const std::string& text) {
  std::string printable;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (letter == '\n') {
      printable += "\\n";
    } else if (code < 0x20 || code == 0x7f) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", code);
      printable += escape;
    } else {
      printable += letter;
    }
  }
  return printable;
}

std::string Quoted(const std::string& text) { return "'" + Printable(text) + "'"; }

}  // namespace orvelhost
