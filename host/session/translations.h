#pragma once

#include <filesystem>

namespace orvelhost {

/// Shows the library's texts as a file says: a JSON object from the paths of localisation keys,
/// such as "orvel/Sections/Volume", to texts. A missing file takes all translations away. Raises
/// std::runtime_error for one that cannot be read; the texts are then as they were.
void LoadTranslations(const std::filesystem::path& file);

}  // namespace orvelhost
