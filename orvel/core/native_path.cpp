#include "orvel/core/native_path.h"

#include <cstdint>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace teskcore::filesupport {

#if defined(_WIN32)

std::filesystem::path ToNative(const std::u16string& path) { return path; }
std::u16string FromNative(const std::filesystem::path& path) { return path.u16string(); }

#else

namespace {

constexpr char16_t kByteBase = 0xDC00;

bool IsEscapedByte(char16_t unit) { return unit >= kByteBase + 0x80 && unit <= kByteBase + 0xFF; }

}  // namespace

std::filesystem::path ToNative(const std::u16string& path) {
  std::string bytes;
  const auto length = static_cast<std::int32_t>(path.size());
  for (std::int32_t i = 0; i < length;) {
    UChar32 character = 0;
    U16_NEXT(path.data(), i, length, character);
    if (U_IS_SURROGATE(character)) {
      if (IsEscapedByte(static_cast<char16_t>(character))) {
        bytes += static_cast<char>(character - kByteBase);
        continue;
      }
      character = 0xFFFD;
    }
    char encoded[U8_MAX_LENGTH];
    std::int32_t encodedLength = 0;
    U8_APPEND_UNSAFE(encoded, encodedLength, character);
    bytes.append(encoded, static_cast<std::size_t>(encodedLength));
  }
  return bytes;
}

std::u16string FromNative(const std::filesystem::path& path) {
  const std::string& bytes = path.native();
  std::u16string text;
  const auto length = static_cast<std::int32_t>(bytes.size());
  for (std::int32_t i = 0; i < length;) {
    const std::int32_t start = i;
    UChar32 character = 0;
    U8_NEXT(bytes.data(), i, length, character);
    if (character >= 0) {
      char16_t units[U16_MAX_LENGTH];
      std::int32_t unitCount = 0;
      U16_APPEND_UNSAFE(units, unitCount, character);
      text.append(units, static_cast<std::size_t>(unitCount));
    } else {
      for (std::int32_t k = start; k < i; ++k) {
        const auto byte = static_cast<unsigned char>(bytes[static_cast<std::size_t>(k)]);
        text += static_cast<char16_t>(kByteBase + byte);
      }
    }
  }
  return text;
}

#endif

}  // namespace teskcore::filesupport
