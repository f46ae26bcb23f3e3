#include "orvel/core/localizer.h"

#include <algorithm>
#include <iterator>

#include "orvel/core/text.h"

namespace teskcore {
namespace {

constexpr char kKeyPrefix[] = "$$$/";

// clang-format off
struct Escape { char16_t name; char16_t text; };
constexpr Escape kEscapes[] = {
  { u'Q', u'"'  },
  { u'n', u'\n' },
  { u't', u'\t' },
  { u'^', u'^'  },
};
// clang-format on

std::u16string FindText(const std::string& key) {
  const auto pathStart = sizeof kKeyPrefix - 1;
  const auto equals = key.find('=', pathStart);
  const auto path = key.substr(pathStart, equals == key.npos ? key.npos : equals - pathStart);
  std::u16string text;
  if (config::Localizer::Get().Find(path, text)) return text;
  return utility::UTF8to16(equals == key.npos ? key : key.substr(equals + 1));
}

const std::u16string* FindArgument(char16_t digit, const std::u16string* first, std::size_t count) {
  const auto index = static_cast<std::size_t>(digit - u'0');
  return index < count ? first + index : nullptr;
}

}  // namespace

namespace config {

Localizer& Localizer::Get() {
  static auto& localizer = *new Localizer;  // never destroyed
  return localizer;
}

}  // namespace config

std::u16string Localize(const std::string& key, std::initializer_list<std::u16string> arguments) {
  if (!key.starts_with(kKeyPrefix)) return utility::UTF8to16(key);
  const std::u16string text = FindText(key);
  std::u16string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
    if (text[i] == u'@') {
      if (const auto* argument = FindArgument(next, arguments.begin(), arguments.size())) {
        result += *argument;
        ++i;
        continue;
      }
    } else if (text[i] == u'^') {
      const auto* escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                        [next](const Escape& e) { return e.name == next; });
      if (escape != std::end(kEscapes)) {
        result += escape->text;
        ++i;
        continue;
      }
    }
    result += text[i];
  }
  return result;
}

}  // namespace teskcore
