#pragma once

#include "orvel/core/dir.h"

namespace orvel {

/// The configuration preset of a mode folder whose name folder gets another name.
inline constexpr char16_t kRenamedName[] = u".renamed";

/// Clears away what a crash left in the folder of all presets, and beside it: files and folders
/// that were being made, templates of documents, and renamings, which are completed or undone.
void ClearRemainsOfCrashes(const Dir& root);

}  // namespace orvel
