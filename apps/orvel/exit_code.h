#pragma once

namespace orvelcli {

/// What the program tells its caller.
enum ExitCode : int {
  kExit_Success = 0,
  kExit_Failed = 1,  ///< a file could not be read, processed or written
  kExit_Usage = 2,   ///< the command line makes no sense; nothing was begun
  kExit_Interrupted = 130,
};

}  // namespace orvelcli
