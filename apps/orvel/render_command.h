#pragma once

namespace orvelcli {

/// `orvel render`. The arguments begin with the command's own name. Returns an ExitCode.
int RunRender(int argc, char** argv);

}  // namespace orvelcli
