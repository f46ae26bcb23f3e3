#pragma once

namespace orvelcli {

/// `orvel analyze`. The arguments begin with the command's own name. Returns an ExitCode.
int RunAnalyze(int argc, char** argv);

}  // namespace orvelcli
