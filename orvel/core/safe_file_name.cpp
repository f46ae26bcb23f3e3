#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <vector>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid.hpp>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "orvel/core/code_points.h"
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
  if (units.size() == 1 && IsSurrogate(units[0])) {
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
  return U_SUCCESS(status) &&
         normalizer->isNormalized({name.data(), static_cast<std::int32_t>(name.size())}, status) &&
         U_SUCCESS(status);
}

bool IsDevice(const std::u16string& name) {
  std::u16string stem = name.substr(0, name.find(u'.'));
  stem.erase(stem.find_last_not_of(u' ') + 1);
  for (char16_t& unit : stem) unit = unit < 0x80 ? static_cast<char16_t>(u_tolower(unit)) : unit;
  return std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices);
}

bool IsRefused(UChar32 character) {
  // Some file systems pass over what is ignorable, and the eye does so everywhere.
  return IsSurrogate(character) || u_iscntrl(character) ||
         u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) ||
         (character < 0x80 && kRefused.find(static_cast<char16_t>(character)) != kRefused.npos);
}

// Small letters that people write every day and that some file systems take for others: for "ss",
// for another sigma, and for i.
constexpr UChar32 kSharpS = 0xDF;
constexpr UChar32 kFinalSigma = 0x3C2;
constexpr UChar32 kDotlessI = 0x131;

bool IsEveryday(UChar32 character) {
  return character == kSharpS || character == kFinalSigma || character == kDotlessI;
}

// Whether comparing without regard to case makes something else of the character than its small
// letter: more than one character, or the letter of another.
bool FoldsOddly(UChar32 character) {
  const UChar32 lower = u_tolower(character);
  const UChar32 upper = u_toupper(character);
  const bool roundTrips =
      character == lower ? u_tolower(upper) == character : u_toupper(lower) == character;
  return !roundTrips || icu::UnicodeString(character).foldCase() != icu::UnicodeString(lower);
}

std::u16string Escape(const std::u16string& name) {
  const bool asciiOnly = !IsInNFC(name);
  const bool device = IsDevice(name);
  std::u16string safe;
  for (std::size_t i = 0; i < name.size();) {
    const std::size_t start = i;
    const UChar32 character = NextCodePoint(name, i);
    const bool atEnd = start == 0 || i == name.size();
    const bool odd = FoldsOddly(character) && !IsEveryday(character);
    const bool escape = IsRefused(character) || odd || (asciiOnly && character >= 0x80) ||
                        (start == 0 && device) || (atEnd && (character == ' ' || character == '.'));
    const auto units = std::u16string_view(name).substr(start, i - start);
    if (escape) {
      AppendEscaped(safe, units);
    } else {
      safe += units;
    }
  }
  return safe.empty() ? u"%" : safe;
}

// The usual spelling: a capital begins the first word and every word of more than three letters.
bool IsUsuallyCapital(const std::vector<UChar32>& name, std::size_t index) {
  if (index > 0 && u_isalpha(name[index - 1])) return false;
  const auto at = name.begin() + static_cast<std::ptrdiff_t>(index);
  const bool firstWord = std::none_of(name.begin(), at, u_isalpha);
  return firstWord || std::find_if_not(at, name.end(), u_isalpha) - at > 3;
}

// Two bits for each letter, a hexadecimal digit for two letters, zeros at the end left out: whether
// its case is not the usual one, and whether it folds oddly. Empty for a name in the usual
// spelling.
std::u16string CaseCode(const std::u16string& name) {
  std::vector<UChar32> characters;
  for (std::size_t i = 0; i < name.size();) characters.push_back(NextCodePoint(name, i));
  std::u16string code;
  unsigned pending = 0;
  bool second = false;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const UChar32 character = characters[i];
    const UChar32 lower = u_tolower(character);
    const bool odd = FoldsOddly(character);
    if (lower == u_toupper(character) && !odd) continue;
    const bool unusual = (character != lower) != IsUsuallyCapital(characters, i);
    const unsigned bits = (unusual ? 1U : 0U) | (odd ? 2U : 0U);
    if (second) AppendHex(code, pending << 2 | bits, 1);
    pending = bits;
    second = !second;
  }
  if (second) AppendHex(code, pending << 2, 1);
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
