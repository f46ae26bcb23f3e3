#include <algorithm>
#include <charconv>
#include <cstddef>
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
#include "orvel/core/taken_names.h"
#include "orvel/core/text.h"

namespace teskcore::utility::FileUtils {
namespace {

constexpr std::size_t kMaxBytes = 200;
constexpr std::size_t kDigestDigits = 32;
constexpr char16_t kMark[] = u"%~";
constexpr char16_t kHexDigits[] = u"0123456789abcdef";
constexpr std::u16string_view kRefused = u"/\\:*?\"<>|%";

// Reserved on Windows with any extension, also those made of the digits' superscript forms.
constexpr std::u16string_view kDevices[] = {
    u"con",  u"prn",  u"aux",       u"nul",       u"conin$",    u"conout$",   u"clock$",
    u"com0", u"com1", u"com2",      u"com3",      u"com4",      u"com5",      u"com6",
    u"com7", u"com8", u"com9",      u"com\u00b9", u"com\u00b2", u"com\u00b3", u"lpt0",
    u"lpt1", u"lpt2", u"lpt3",      u"lpt4",      u"lpt5",      u"lpt6",      u"lpt7",
    u"lpt8", u"lpt9", u"lpt\u00b9", u"lpt\u00b2", u"lpt\u00b3",
};

void AppendHex(std::u16string& text, unsigned char byte) {
  text += kHexDigits[byte >> 4];
  text += kHexDigits[byte & 15U];
}

void AppendEscaped(std::u16string& text, UChar32 character) {
  std::string bytes;
  AppendCodePoint(bytes, character);
  for (const char byte : bytes) {
    text += u'%';
    AppendHex(text, static_cast<unsigned char>(byte));
  }
}

bool IsDevice(const std::u16string& name) {
  std::u16string stem = name.substr(0, name.find(u'.'));
  stem.erase(stem.find_last_not_of(u' ') + 1);
  for (char16_t& unit : stem) unit = unit < 0x80 ? static_cast<char16_t>(u_tolower(unit)) : unit;
  return std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices);
}

bool IsRefused(UChar32 character) {
  return IsSurrogate(character) || u_charType(character) == U_CONTROL_CHAR ||
         (character < 0x80 && kRefused.find(static_cast<char16_t>(character)) != kRefused.npos);
}

std::u16string Escape(const std::u16string& name) {
  const bool isDevice = IsDevice(name);
  std::u16string safe;
  for (std::size_t i = 0; i < name.size();) {
    const bool isOfDevice = isDevice && i == 0;
    const UChar32 character = NextCodePoint(name, i);
    const bool isDropped = i == name.size() && (character == ' ' || character == '.');
    if (IsRefused(character) || isOfDevice || isDropped) {
      AppendEscaped(safe, character);
    } else {
      AppendCodePoint(safe, character);
    }
  }
  return safe.empty() ? u"%" : safe;
}

// In UTF-8. A "%" that escapes nothing stands for itself.
std::string Unescape(const std::string& safe) {
  std::string name;
  for (std::size_t i = 0; i < safe.size(); ++i) {
    const char* const digits = safe.data() + i + 1;
    unsigned byte = 0;
    if (safe[i] == '%' && i + 2 < safe.size() &&
        std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      name += static_cast<char>(byte);
      i += 2;
    } else {
      name += safe[i];
    }
  }
  return name;
}

// Equal for names that some file system takes for one: those that differ in case, in how accents
// are composed, or in what is not seen. It passes over some more differences, which does no harm.
std::u16string Fold(const std::u16string& name) {
  icu::UnicodeString folded;
  for (std::size_t i = 0; i < name.size();) {
    folded.append(u_tolower(u_toupper(NextCodePoint(name, i))));
  }
  UErrorCode status = U_ZERO_ERROR;
  const auto* folding = icu::Normalizer2::getNFKCCasefoldInstance(status);
  if (folding != nullptr) {  // or ICU comes without its data
    const auto normalized = folding->normalize(folded, status);
    if (U_SUCCESS(status)) folded = normalized;
  }
  return {folded.getBuffer(), static_cast<std::size_t>(folded.length())};
}

std::u16string Digest(const std::u16string& name) {
  // Hashed as UTF-16 units, since an ill-formed name has no UTF-8 of its own.
  const boost::uuids::name_generator_sha1 generator(boost::uuids::ns::url());
  const auto id = generator(name.data(), name.size() * sizeof(char16_t));
  std::u16string digits;
  for (const auto byte : id) AppendHex(digits, byte);
  return digits;
}

// As many whole characters, and whole escapes, as fit into `bytes` of UTF-8.
std::u16string Cut(const std::u16string& safe, std::size_t bytes) {
  std::u16string cut;
  for (std::size_t i = 0; i < safe.size();) {
    std::size_t units = U16_IS_LEAD(safe[i]) ? 2 : 1;
    if (safe[i] == u'%') units = 3;
    const std::u16string next = cut + safe.substr(i, units);
    if (UTF16to8(next).size() > bytes) break;
    cut = next;
    i += units;
  }
  return cut;
}

// A file name was made of a name when they have an origin in common: the name, or its digest.
std::string OriginOfName(const std::string& name) { return "=" + name; }
std::string OriginOfDigest(const std::u16string& digest) { return "#" + UTF16to8(digest); }

std::vector<std::string> OriginsOfName(const std::u16string& name) {
  if (name.empty()) return {};
  return {OriginOfName(UTF16to8(name)), OriginOfDigest(Digest(name))};
}

std::vector<std::string> OriginsOfFileName(const std::u16string& fileName) {
  const std::size_t mark = std::min(fileName.find(kMark), fileName.size());
  const std::u16string code = fileName.substr(std::min(mark + 2, fileName.size()));
  if (code.find_first_not_of(kHexDigits) != code.npos) return {};
  std::vector<std::string> origins = {OriginOfName(Unescape(UTF16to8(fileName.substr(0, mark))))};
  if (code.size() >= kDigestDigits) {
    origins.push_back(OriginOfDigest(code.substr(0, kDigestDigits)));
  }
  return origins;
}

}  // namespace

std::u16string NormalizePathForSaving(const std::u16string& name) {
  const std::u16string safe = Escape(name);
  if (UTF16to8(safe).size() <= kMaxBytes) return safe;
  const std::u16string tail = kMark + Digest(name);
  return Cut(safe, kMaxBytes - tail.size()) + tail;
}

bool IsNormalizedFrom(const std::u16string& fileName, const std::u16string& name) {
  const auto origins = OriginsOfFileName(fileName);
  return std::ranges::any_of(OriginsOfName(name), [&origins](const std::string& origin) {
    return std::ranges::find(origins, origin) != origins.end();
  });
}

void TakenNames::Insert(const std::u16string& fileName) {
  if (!names_.insert(fileName).second) return;
  folded_.insert(Fold(fileName));
  for (const auto& origin : OriginsOfFileName(fileName)) origins_.emplace(origin, fileName);
}

void TakenNames::Erase(const std::u16string& fileName) {
  if (names_.erase(fileName) == 0) return;
  folded_.erase(folded_.find(Fold(fileName)));
  for (const auto& origin : OriginsOfFileName(fileName)) origins_.erase({origin, fileName});
}

std::u16string TakenNames::Choose(const std::u16string& name) const {
  std::u16string safe = NormalizePathForSaving(name);
  if (Contains(safe)) return safe;
  for (const auto& origin : OriginsOfName(name)) {
    const auto at = origins_.lower_bound({origin, {}});
    if (at != origins_.end() && at->first == origin) return at->second;
  }
  std::u16string candidate = safe;
  for (int number = 2; folded_.contains(Fold(candidate)); ++number) {
    candidate = safe + kMark + UTF8to16(std::to_string(number));
  }
  return candidate;
}

}  // namespace teskcore::utility::FileUtils
