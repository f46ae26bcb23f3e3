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

/// A file name for a name that a person typed: the same name, and readable, with all that a file
/// system somewhere refuses written as "%" and two hexadecimal digits per UTF-8 byte. That is:
/// control characters, / \ : * ? " < > | and % itself, a dot or blank at either end, the first
/// letter of a reserved device name ("CON", "COM1" ...), letters that are seldom used and taken for
/// others when case is passed over (ligatures, the long s, the Greek iota below a letter), what is
/// not seen at all (joiners), and of a letter with its marks that is not in Unicode's NFC form, or
/// that has such a character among them, all that is beyond ASCII.
///
/// Two different names never give one file name, also where the file system takes capitals and
/// small letters for the same: a name that is not written Like This (capitals at the start of the
/// name and of words above three letters) ends in "%~" and a code of the letters that differ, in
/// case or by standing for others. "DJ Mix" becomes "DJ Mix%~14". A name that would take more than
/// 200 bytes is cut short and ends in "%~" and 32 digits of its SHA-1 (RFC 4122, version 5). The
/// result has 200 bytes of UTF-8 at the most, which leaves room for an extension.
ORVEL_EXPORT std::u16string NormalizePathForSaving(const std::u16string& name);

}  // namespace teskcore::utility::FileUtils

namespace orvel {
namespace FileUtils = teskcore::utility::FileUtils;
}  // namespace orvel
