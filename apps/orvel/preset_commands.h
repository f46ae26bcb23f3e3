#pragma once

namespace orvelcli {

/// `orvel presets [MODE]`, and `orvel presets save`, `remove`, `export` and `import`; `argv` begins
/// with the command's name. Returns an ExitCode.
int RunPresets(int argc, char** argv);

}  // namespace orvelcli
