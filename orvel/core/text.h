#pragma once

#include <cstddef>
#include <string>

#include "orvel/core/export.h"

namespace teskcore::utility {

/// Converts UTF-8 to UTF-16. Every invalid sequence becomes U+FFFD; their number is stored in
/// `errors` when given.
ORVEL_EXPORT std::u16string UTF8to16(const std::string& text, int* errors = nullptr);

/// The same, with the number as a reference.
inline std::u16string UTF8to16(const std::string& text, int& errors) {
  return UTF8to16(text, &errors);
}

/// Converts UTF-16 to UTF-8. An unpaired surrogate becomes U+FFFD.
ORVEL_EXPORT std::string UTF16to8(const std::u16string& text);

/// Widens `length` units of 7-bit text; a unit above 127 becomes U+FFFD.
ORVEL_EXPORT std::u16string AsciiToUTF16(const char* text, std::size_t length);

}  // namespace teskcore::utility

namespace teskcore {
using utility::AsciiToUTF16;
using utility::UTF16to8;
using utility::UTF8to16;
}  // namespace teskcore

namespace orvel {
using teskcore::utility::AsciiToUTF16;
using teskcore::utility::UTF16to8;
using teskcore::utility::UTF8to16;
}  // namespace orvel
