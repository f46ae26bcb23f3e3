#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
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

const icu::Normalizer2& NFC() {
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  assert(normalizer != nullptr);  // its data is a part of ICU's code
  return *normalizer;
}

void AppendEscaped(std::u16string& text, UChar32 character) {
  if (IsSurrogate(character)) {
    text += u"%u";  // no character, so no UTF-8: the unit itself
    AppendHex(text, static_cast<unsigned>(character), 4);
    return;
  }
  std::string bytes;
  AppendCodePoint(bytes, character);
  for (const char byte : bytes) {
    text += u'%';
    AppendHex(text, static_cast<unsigned char>(byte), 2);
  }
}

using Characters = std::vector<UChar32>;

Characters Split(const std::u16string& name) {
  Characters characters;
  for (std::size_t i = 0; i < name.size();) characters.push_back(NextCodePoint(name, i));
  return characters;
}

bool IsDevice(const std::u16string& name) {
  std::u16string stem = name.substr(0, name.find(u'.'));
  stem.erase(stem.find_last_not_of(u' ') + 1);
  for (char16_t& unit : stem) unit = unit < 0x80 ? static_cast<char16_t>(u_tolower(unit)) : unit;
  return std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices);
}

// Whether comparing without regard to case makes something else of the character than its small
// letter or its capital: more than one character, or the letter of another.
bool FoldsOddly(UChar32 character) {
  const UChar32 lower = u_tolower(character);
  const UChar32 upper = u_toupper(character);
  const bool roundTrips =
      character == lower ? u_tolower(upper) == character : u_toupper(lower) == character;
  const auto folded = icu::UnicodeString(character).foldCase();
  return !roundTrips ||
         (folded != icu::UnicodeString(lower) && folded != icu::UnicodeString(upper));
}

// Of the letters that fold oddly, those that the code of the name can tell from all others: the
// ones in daily use, of which no two fold alike in the same case, and the small letters that fold
// oddly only because they have no capital in one character.
bool IsToldByCode(UChar32 character) {
  constexpr UChar32 kInDailyUse[] = {
      0xB5,    // micro sign, for the Greek mu
      0xDF,    // sharp s, for ss
      0x130,   // Turkish capital i with its dot, for i and a dot
      0x3C2,   // final sigma, for sigma
      0x587,   // Armenian ech yiwn, for ech and yiwn
      0x1E9E,  // capital sharp s, for SS
  };
  if (std::find(std::begin(kInDailyUse), std::end(kInDailyUse), character) !=
      std::end(kInDailyUse)) {
    return true;
  }
  // Folded, these are the same character taken apart.
  const icu::UnicodeString text(character);
  UErrorCode status = U_ZERO_ERROR;
  return NFC().normalize(icu::UnicodeString(text).foldCase(), status) == text && U_SUCCESS(status);
}

bool IsRefused(UChar32 character) {
  if (character < 0x80) {
    return u_iscntrl(character) || kRefused.find(static_cast<char16_t>(character)) != kRefused.npos;
  }
  // Some file systems pass over what is ignorable, and the eye does so everywhere.
  return IsSurrogate(character) || u_iscntrl(character) ||
         u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) ||
         (FoldsOddly(character) && !IsToldByCode(character));
}

bool IsInNFC(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  return NFC().isNormalized(text, status) && U_SUCCESS(status);
}

// Which characters are escaped. What composes with what stands before it shares its fate, so that
// the result is in NFC again.
std::vector<bool> FindEscapes(const std::u16string& name, const Characters& characters) {
  const std::size_t count = characters.size();
  std::vector<bool> escapes(count);
  const bool device = IsDevice(name);
  for (std::size_t i = 0; i < count; ++i) {
    const bool atEnd = i == 0 || i + 1 == count;
    escapes[i] = IsRefused(characters[i]) || (i == 0 && device) ||
                 (atEnd && (characters[i] == ' ' || characters[i] == '.'));
  }
  for (std::size_t begin = 0; begin < count;) {
    icu::UnicodeString sequence;
    bool escape = false;
    std::size_t end = begin;
    do {
      sequence.append(characters[end]);
      escape = escape || escapes[end];
      ++end;
    } while (end < count && !NFC().hasBoundaryBefore(characters[end]));
    if (escape || !IsInNFC(sequence)) {
      for (std::size_t i = begin; i < end; ++i) escapes[i] = escapes[i] || characters[i] >= 0x80;
    }
    begin = end;
  }
  return escapes;
}

std::u16string Escape(const std::u16string& name, const Characters& characters) {
  const std::vector<bool> escapes = FindEscapes(name, characters);
  std::u16string safe;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    if (escapes[i]) {
      AppendEscaped(safe, characters[i]);
    } else {
      AppendCodePoint(safe, characters[i]);
    }
  }
  return safe.empty() ? u"%" : safe;
}

// The usual spelling: a capital begins the first word and every word of more than three letters.
std::vector<bool> FindUsualCapitals(const Characters& characters) {
  std::vector<bool> capitals(characters.size());
  bool firstWord = true;
  for (auto at = characters.begin(); at != characters.end();) {
    const auto end = std::find_if_not(at, characters.end(), u_isUAlphabetic);
    if (end == at) {
      ++at;
      continue;
    }
    capitals[static_cast<std::size_t>(at - characters.begin())] = firstWord || end - at > 3;
    firstWord = false;
    at = end;
  }
  return capitals;
}

// Two bits for each letter, a hexadecimal digit for two letters, zeros at the end left out: whether
// its case is not the usual one, and whether it folds oddly. Empty for a name in the usual
// spelling.
std::u16string CaseCode(const Characters& characters) {
  const std::vector<bool> capitals = FindUsualCapitals(characters);
  std::u16string code;
  unsigned pending = 0;
  bool second = false;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const UChar32 character = characters[i];
    const UChar32 lower = u_tolower(character);
    const bool odd = FoldsOddly(character);
    if (lower == u_toupper(character) && !odd) continue;
    const bool unusual = (character != lower) != capitals[i];
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
  const Characters characters = Split(name);
  const std::u16string safe = Escape(name, characters);
  const std::u16string code = CaseCode(characters);
  const std::u16string marked = code.empty() ? safe : safe + kMark + code;
  if (UTF16to8(marked).size() <= kMaxBytes) return marked;
  const std::u16string tail = kMark + Digest(name);
  return Cut(safe, kMaxBytes - tail.size()) + tail;
}

}  // namespace teskcore::utility::FileUtils
