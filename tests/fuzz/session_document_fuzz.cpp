// Any bytes, read as a session: either a SessionError, or a session that is the same when it is
// written and read again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/session/session_document.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  orvelhost::SessionDocument document;
  try {
    document = orvelhost::ParseSession(text, "/sessions/day");
  } catch (const orvelhost::SessionError&) {
    return 0;
  }
  const std::string written = orvelhost::FormatSession(document, "/sessions/day");
  const orvelhost::SessionDocument again = orvelhost::ParseSession(written, "/sessions/day");
  if (again.clips != document.clips || again.selected != document.selected ||
      orvelhost::FormatSession(again, "/sessions/day") != written) {
    std::abort();
  }
  return 0;
}
