#pragma once

#include <string>

#include <boost/function.hpp>

#include "orvel/core/dir.h"

namespace orvel {

/// The folders of the preset store. What fails is traced with its path and cause.

/// Whether a mode id can name a folder: it may come from a document of unknown origin.
bool IsFolderName(const std::string& modeID);

/// Calls `visit` for each sub-folder. One that cannot be listed has none.
void ForEachSubfolder(const Dir& folder, const boost::function<void(const Dir& folder)>& visit);

bool IsLink(const Dir& folder);

/// Of a link, the link. False when it stays.
bool DeleteFolder(const Dir& folder);

void DeleteIfEmpty(const Dir& folder);

/// Deletes a mode folder and then the folder of its name, as far as they are empty.
void DeleteModeFolder(const Dir& folder);

/// False when it cannot; the folder is then where it was.
bool MoveFolder(const Dir& from, const Dir& to);

/// With its parents. False when it is not there afterwards.
bool CreateFolder(const Dir& folder);

}  // namespace orvel
