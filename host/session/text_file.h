#pragma once

#include <filesystem>
#include <string>

namespace orvelhost {

/// Reads a whole file of at most 256 MiB. Raises AudioError.
std::string ReadTextFile(const std::filesystem::path& path);

/// Puts `text`, of at most 256 MiB, in the place of the file, whole or not at all. Raises
/// AudioError.
void WriteTextFile(const std::filesystem::path& path, const std::string& text);

}  // namespace orvelhost
