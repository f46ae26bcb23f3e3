#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvelhost {

/// One of the documents that are compiled into the library.
struct FactoryDocument {
  const char* fileName;
  std::string text;
};

/// The adjustments modes, the configuration presets and the user presets.
std::vector<FactoryDocument> FactoryDocuments();

/// Writes them into `folder`, which must exist, each in the place of an older one. False, with the
/// cause in `error`, when one cannot be written; the older file is then as it was.
bool WriteFactoryDocuments(const std::filesystem::path& folder, std::string& error);

}  // namespace orvelhost
