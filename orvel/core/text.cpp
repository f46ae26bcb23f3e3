#include "orvel/core/text.h"

#include <cstdint>

#include <boost/numeric/conversion/cast.hpp>
#include <unicode/ustring.h>

namespace teskcore::utility {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;

}  // namespace

std::u16string UTF8to16(const std::string& text, int* errors) {
  // No UTF-8 text has more UTF-16 units than it has bytes.
  std::u16string result(text.size(), u'\0');
  std::int32_t length = 0;
  std::int32_t replaced = 0;
  UErrorCode status = U_ZERO_ERROR;
  const auto size = boost::numeric_cast<std::int32_t>(text.size());
  u_strFromUTF8WithSub(result.data(), size, &length, text.data(), size, kReplacement, &replaced,
                       &status);
  result.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  if (errors != nullptr) *errors = replaced;
  return result;
}

std::string UTF16to8(const std::u16string& text) {
  // One UTF-16 unit takes three UTF-8 bytes at the most.
  std::string result(text.size() * 3, '\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(result.data(), boost::numeric_cast<std::int32_t>(result.size()), &length,
                     text.data(), boost::numeric_cast<std::int32_t>(text.size()), kReplacement,
                     nullptr, &status);
  result.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
  return result;
}

std::u16string AsciiToUTF16(const char* text, std::size_t length) {
  std::u16string result(length, u'\0');
  for (std::size_t i = 0; i < length; ++i) {
    const auto unit = static_cast<unsigned char>(text[i]);
    result[i] = unit < 0x80 ? static_cast<char16_t>(unit) : u'\uFFFD';
  }
  return result;
}

}  // namespace teskcore::utility
