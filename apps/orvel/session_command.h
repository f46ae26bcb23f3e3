#pragma once

namespace orvelcli {

/// `orvel session [FILE]`; `argv` begins with the command's name. Returns an ExitCode.
int RunSession(int argc, char** argv);

}  // namespace orvelcli
