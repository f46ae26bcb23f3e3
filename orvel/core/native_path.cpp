#include "orvel/core/native_path.h"

#include <cstddef>
#include <string_view>

#include "orvel/core/code_points.h"

namespace teskcore::filesupport {

namespace {

constexpr UChar32 kByteBase = 0xDC00;
constexpr UChar32 kReplacement = 0xFFFD;

bool IsEscapedByte(UChar32 unit) { return unit >= kByteBase + 0x80 && unit <= kByteBase + 0xFF; }

}  // namespace

std::filesystem::path ToNative(const std::u16string& path) {
  std::string bytes;
  bytes.reserve(path.size());
  for (std::size_t i = 0; i < path.size();) {
    if (path[i] < 0x80) {  // what most of a path is made of
      bytes += static_cast<char>(path[i++]);
      continue;
    }
    const UChar32 character = utility::NextCodePoint(path, i);
    if (!utility::IsSurrogate(character)) {
      utility::AppendCodePoint(bytes, character);
    } else if (IsEscapedByte(character)) {
      bytes += static_cast<char>(character - kByteBase);
    } else {
      utility::AppendCodePoint(bytes, kReplacement);
    }
  }
  return bytes;
}

std::u16string FromNative(const std::filesystem::path& path) {
  const std::string& bytes = path.native();
  std::u16string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    if (static_cast<unsigned char>(bytes[i]) < 0x80) {
      text += static_cast<char16_t>(bytes[i++]);
      continue;
    }
    const std::size_t start = i;
    const UChar32 character = utility::NextCodePoint(bytes, i);
    if (character >= 0) {
      utility::AppendCodePoint(text, character);
      continue;
    }
    for (const char byte : bytes.substr(start, i - start)) {
      text += static_cast<char16_t>(kByteBase + static_cast<unsigned char>(byte));
    }
  }
  return text;
}

std::u16string JoinPath(const std::u16string& folder, const std::u16string& name) {
  if (folder.empty() || name.starts_with(u'/')) return name;
  return folder.ends_with(u'/') ? folder + name : folder + u'/' + name;
}

std::u16string FileNameOf(const std::u16string& path) {
  return path.substr(path.rfind(u'/') + 1);  // without a slash all of it: npos + 1 is 0
}

bool IsPathElement(const std::u16string& name) {
  constexpr std::u16string_view kEndsAnElement(u"/\0", 2);
  return !name.empty() && name != u"." && name != u".." &&
         name.find_first_of(kEndsAnElement) == name.npos;
}

}  // namespace teskcore::filesupport
