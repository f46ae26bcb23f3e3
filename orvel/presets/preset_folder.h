#pragma once

#include <string>

#include <boost/function.hpp>

#include "orvel/core/dir.h"
#include "orvel/core/file.h"

namespace orvel {

// The folders of the preset store. What fails is traced with its path and cause. Links in a folder
// are not visited.

/// Whether a mode id can name a folder: it may come from a document of unknown origin.
bool IsFolderName(const std::string& modeID);

/// Calls `visit` for each sub-folder, by name. False, without a call, when the folder cannot be
/// listed.
bool ForEachSubfolder(const Dir& folder, const boost::function<void(const Dir& folder)>& visit);

/// The same for the files whose name `filter` keeps.
bool ForEachFile(const Dir& folder, const Dir::Filter& filter,
                 const boost::function<void(const File& file)>& visit);

bool IsLink(const Dir& folder);
bool IsLink(const File& file);

/// Whether a mode folder or that of its name is a link.
bool IsBehindLink(const Dir& modeFolder);

/// With all that is in it, as far as it can be deleted.
void DeleteTree(const Dir& folder);

void DeleteIfEmpty(const Dir& folder);

/// Deletes a mode folder and then the folder of its name, as far as they are empty.
void DeleteModeFolder(const Dir& folder);

/// With its parents. False when it is not there afterwards.
bool CreateFolder(const Dir& folder);

/// Creates a mode folder and that of its name, where no link stands in the place of either.
bool CreateModeFolder(const Dir& folder);

}  // namespace orvel
