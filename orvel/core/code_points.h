#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace teskcore::utility {

// ICU's macros mix signed and unsigned numbers all over; they stand here, and nowhere else.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-conversion"
#pragma GCC diagnostic ignored "-Wconversion"

/// The character at `position`, which moves past it. An unpaired surrogate is given as it is.
inline UChar32 NextCodePoint(std::u16string_view text, std::size_t& position) {
  UChar32 character = 0;
  U16_NEXT(text.data(), position, text.size(), character);
  return character;
}

/// The same for UTF-8; negative where no valid character stands, and `position` then moves past the
/// invalid sequence.
inline UChar32 NextCodePoint(std::string_view text, std::size_t& position) {
  UChar32 character = 0;
  U8_NEXT(text.data(), position, text.size(), character);
  return character;
}

inline bool IsSurrogate(UChar32 character) { return U_IS_SURROGATE(character); }

/// `character` must be valid; an unpaired surrogate gives three bytes, which are no UTF-8.
inline void AppendCodePoint(std::string& text, UChar32 character) {
  char bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  text.append(bytes, length);
}

inline void AppendCodePoint(std::u16string& text, UChar32 character) {
  char16_t units[U16_MAX_LENGTH];
  std::size_t length = 0;
  U16_APPEND_UNSAFE(units, length, character);
  text.append(units, length);
}

#pragma GCC diagnostic pop

}  // namespace teskcore::utility
