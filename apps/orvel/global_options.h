#pragma once

#include <vector>

namespace orvelcli {

/// Takes up the options that every command has, --prefs and --log, and returns the other arguments,
/// with the program's name first. Raises UsageError.
std::vector<char*> TakeGlobalOptions(int argc, char** argv);

}  // namespace orvelcli
