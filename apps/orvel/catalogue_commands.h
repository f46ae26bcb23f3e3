#pragma once

namespace orvelcli {

/// `orvel sections MODE` and `orvel presets [MODE]`; `argv` begins with the command's name. They
/// return the exit code.
int RunSections(int argc, char** argv);
int RunPresets(int argc, char** argv);

}  // namespace orvelcli
