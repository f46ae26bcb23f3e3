#pragma once

#include <string>

#include "orvel/core/dir.h"
#include "orvel/core/export.h"

namespace teskcore::utility::FileUtils {

/// Writes `text` as the whole content of the file at `path`. Raises `file_exception`, also when the
/// disk is full. Not atomic by itself: give it the temporary file of a `SafeSave`.
ORVEL_EXPORT void SimpleWriteStringToFile(const std::u16string& path, const std::string& text);

/// The first of "name.ext", "name 2.ext", "name 3.ext" ... that does not exist in `folder`, where
/// the name is made safe by `NormalizePathForSaving`. `extension` includes its dot, or is empty;
/// one with a slash or a NUL in it raises `file_exception`.
ORVEL_EXPORT std::u16string UniqueFileName(const filesupport::Dir& folder,
                                           const std::u16string& name,
                                           const std::u16string& extension);

/// A file name for a name that a person typed: the same name, with all that a file system somewhere
/// refuses written as "%" and two hexadecimal digits per UTF-8 byte. That is: control characters,
/// / \ : * ? " < > | and % itself, a dot or blank at the end, and the first letter of a reserved
/// device name ("CON", "COM1" ...). A name that would take more than 200 bytes of UTF-8 is cut
/// short and ends in "%~" and 32 digits of its SHA-1 (RFC 4122, version 5). Two different names
/// never give the same file name.
ORVEL_EXPORT std::u16string NormalizePathForSaving(const std::u16string& name);

/// Whether the function above or `TakenNames`, now or in the earlier versions that put a code of
/// the letters' case behind "%~", made this file name of the name.
ORVEL_EXPORT bool IsNormalizedFrom(const std::u16string& fileName, const std::u16string& name);

}  // namespace teskcore::utility::FileUtils

namespace orvel {
namespace FileUtils = teskcore::utility::FileUtils;
}  // namespace orvel
