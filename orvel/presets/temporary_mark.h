#pragma once

#include "orvel/core/dir.h"
#include "orvel/core/guid.h"

namespace orvel {

/// The mark of a temporary configuration preset: a file in its mode folder that tells which preset
/// it marks, in which folder, and the number of the process that made it. A copy that a person made
/// of the folder has another name, so the mark in it means nothing.

/// False, traced, when it cannot be written.
bool WriteTemporaryMark(const Dir& folder, const Guid& guid);

/// True when no mark is there any more.
bool DeleteTemporaryMark(const Dir& folder);

/// Whether the folder's mark is that of this preset.
bool IsMarkedTemporary(const Dir& folder, const Guid& guid);

/// Clears away what a crash left of a temporary configuration preset. With user presets under it,
/// it stays as an ordinary one: they are somebody's work. False when there is nothing to clear, as
/// while the process that made it runs.
bool ClearAbandonedTemporary(const Dir& folder);

}  // namespace orvel
