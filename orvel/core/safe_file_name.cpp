#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid.hpp>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include "orvel/core/file_utils.h"
#include "orvel/core/text.h"

namespace teskcore::utility::FileUtils {
namespace {

constexpr std::size_t kMaxBytes = 200;
constexpr char16_t kMark[] = u"%~";
constexpr std::u16string_view kRefused = u"/\\:*?\"<>|%";

// Reserved on Windows with any extension, also those made of the digits' superscript forms.
constexpr std::u16string_view kDevices[] = {
    u"con",  u"prn",  u"aux",       u"nul",       u"conin$",    u"conout$",   u"clock$",
    u"com0", u"com1", u"com2",      u"com3",      u"com4",      u"com5",      u"com6",
    u"com7", u"com8", u"com9",      u"com\u00b9", u"com\u00b2", u"com\u00b3", u"lpt0",
    u"lpt1", u"lpt2", u"lpt3",      u"lpt4",      u"lpt5",      u"lpt6",      u"lpt7",
    u"lpt8", u"lpt9", u"lpt\u00b9", u"lpt\u00b2", u"lpt\u00b3",
};

void AppendHex(std::u16string& text, unsigned value, int digits) {
  constexpr char16_t kDigits[] = u"0123456789abcdef";
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
    text += kDigits[(value >> shift) & 15U];
}

void AppendEscaped(std::u16string& text, std::u16string_view units) {
  if (units.size() == 1 && U16_IS_SURROGATE(units[0])) {
    text += u"%u";  // no character, so no UTF-8: the unit itself
    AppendHex(text, units[0], 4);
    return;
  }
  for (const char byte : UTF16to8(std::u16string(units))) {
    text += u'%';
    AppendHex(text, static_cast<unsigned char>(byte), 2);
  }
}

bool IsInNFC(const std::u16string& name) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  return U_SUCCESS(status) && normalizer->isNormalized({name.data(), static_cast<std::int32_t>(name.size())}, status) &&
         U_SUCCESS(status);
}

bool IsDevice(const std::u16string& name) {
  std::u16string stem = name.substr(0, name.find(u'.'));
  stem.erase(stem.find_last_not_of(u' ') + 1);
  for (char16_t& unit : stem) unit = unit < 0x80 ? static_cast<char16_t>(u_tolower(unit)) : unit;
  return std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices);
}

bool IsRefused(UChar32 character) {
  return U_IS_SURROGATE(character) || u_iscntrl(character) ||
         (character < 0x80 && kRefused.find(static_cast<char16_t>(character)) != kRefused.npos);
}

std::u16string Escape(const std::u16string& name) {
  const bool asciiOnly = !IsInNFC(name);
  const bool device = IsDevice(name);
  const auto length = static_cast<std::int32_t>(name.size());
  std::u16string safe;
  for (std::int32_t i = 0; i < length;) {
    const std::int32_t start = i;
    UChar32 character = 0;
    U16_NEXT(name.data(), i, length, character);
    const bool first = start == 0;
    const bool atEnd = first || i == length;
    const bool escape = IsRefused(character) || (asciiOnly && character >= 0x80) ||
                        (first && device) || (atEnd && (character == ' ' || character == '.'));
    const auto units = std::u16string_view(name).substr(static_cast<std::size_t>(start),
                                                        static_cast<std::size_t>(i - start));
    if (escape) {
      AppendEscaped(safe, units);
    } else {
      safe += units;
    }
  }
  return safe.empty() ? u"%" : safe;
}

// One hexadecimal digit for every four letters that have a case, a bit set where the letter's case
// is not the usual one; trailing zeros left out. Empty for a name in the usual spelling.
std::u16string CaseCode(const std::u16string& name) {
  const auto length = static_cast<std::int32_t>(name.size());
  std::u16string code;
  unsigned bits = 0;
  int letters = 0;
  std::int32_t wordLetters = 0;
  bool firstWord = true;
  for (std::int32_t i = 0; i < length;) {
    const std::int32_t start = i;
    UChar32 character = 0;
    U16_NEXT(name.data(), i, length, character);
    if (!u_isalpha(character)) {
      firstWord = firstWord && wordLetters == 0;
      wordLetters = 0;
      continue;
    }
    const bool beginsWord = wordLetters++ == 0;
    const UChar32 lower = u_tolower(character);
    if (lower == u_toupper(character)) continue;
    bool capital = false;
    if (beginsWord) {
      std::int32_t end = start;
      std::int32_t count = 0;
      for (UChar32 next = 0; end < length; ++count) {
        U16_NEXT(name.data(), end, length, next);
        if (!u_isalpha(next)) break;
      }
      capital = firstWord || count > 3;
    }
    if ((character != lower) != capital) bits |= 1U << (letters % 4);
    if (++letters % 4 == 0) {
      AppendHex(code, bits, 1);
      bits = 0;
    }
  }
  AppendHex(code, bits, 1);
  code.erase(code.find_last_not_of(u'0') + 1);
  return code;
}

std::u16string Digest(const std::u16string& name) {
  // Hashed as UTF-16 units, since an ill-formed name has no UTF-8 of its own.
  const boost::uuids::name_generator_sha1 generator(boost::uuids::ns::url());
  const auto id = generator(name.data(), name.size() * sizeof(char16_t));
  std::u16string digits;
  for (const auto byte : id) AppendHex(digits, byte, 2);
  return digits;
}

// As many whole characters, and whole escapes, as fit into `bytes` of UTF-8.
std::u16string Cut(const std::u16string& safe, std::size_t bytes) {
  std::u16string cut;
  for (std::size_t i = 0; i < safe.size();) {
    std::size_t units = U16_IS_LEAD(safe[i]) ? 2 : 1;
    if (safe[i] == u'%') units = safe.compare(i, 2, u"%u") == 0 ? 6 : 3;
    const std::u16string next = cut + safe.substr(i, units);
    if (UTF16to8(next).size() > bytes) break;
    cut = next;
    i += units;
  }
  return cut;
}

}  // namespace

std::u16string NormalizePathForSaving(const std::u16string& name) {
  const std::u16string safe = Escape(name);
  const std::u16string code = CaseCode(name);
  const std::u16string marked = code.empty() ? safe : safe + kMark + code;
  if (UTF16to8(marked).size() <= kMaxBytes) return marked;
  const std::u16string tail = kMark + Digest(name);
  return Cut(safe, kMaxBytes - tail.size()) + tail;
}

}  // namespace teskcore::utility::FileUtils
