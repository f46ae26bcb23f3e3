#pragma once

#include <filesystem>
#include <string>

namespace teskcore::filesupport {

/// A UTF-16 path as the platform wants it, and back. A name on a POSIX disk is bytes, not always
/// UTF-8: each byte that is not part of valid UTF-8 travels as the lone surrogate U+DC00 + byte
/// (Python's PEP 383), so that every file that can be listed can be opened.
std::filesystem::path ToNative(const std::u16string& path);
std::u16string FromNative(const std::filesystem::path& path);

/// Whether `name` names something in a folder and leads nowhere else: it is neither empty nor "."
/// nor "..", and holds no slash and no NUL.
bool IsPathElement(const std::u16string& name);

}  // namespace teskcore::filesupport
