#pragma once

namespace orvelcli {

/// From now on SIGINT and SIGTERM end the program no more, but are noted.
void NoteInterrupts();

bool WasInterrupted();

}  // namespace orvelcli
