#pragma once

namespace orvelcli {

/// `orvel modes`, `orvel sections MODE` and `orvel templates [MODE]`; `argv` begins with the
/// command's name. They return an ExitCode.
int RunModes(int argc, char** argv);
int RunSections(int argc, char** argv);
int RunTemplates(int argc, char** argv);

}  // namespace orvelcli
