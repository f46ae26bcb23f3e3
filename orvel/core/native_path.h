#pragma once

#include <filesystem>
#include <string>

namespace teskcore::filesupport {

/// A UTF-16 path as the platform wants it, and back. A name on a POSIX disk is bytes, not always
/// UTF-8: each byte that is not part of valid UTF-8 travels as the lone surrogate U+DC00 + byte
/// (Python's PEP 383), so that every file that can be listed can be opened.
std::filesystem::path ToNative(const std::u16string& path);
std::u16string FromNative(const std::filesystem::path& path);

/// The path of `name` in `folder`, and the last part of a path: as `std::filesystem::path` gives
/// them, without a conversion there and back for each of the files of a folder.
std::u16string JoinPath(const std::u16string& folder, const std::u16string& name);
std::u16string FileNameOf(const std::u16string& path);

/// Whether `name` names something in a folder and leads nowhere else: it is neither empty nor "."
/// nor "..", and holds no slash and no NUL.
bool IsPathElement(const std::u16string& name);

}  // namespace teskcore::filesupport
