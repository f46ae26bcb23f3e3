#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "orvel/core/json.h"
#include "orvel/core/text.h"

namespace teskcore::serialization {
namespace {

// The largest magnitude up to which every whole number is a double of its own.
constexpr double kExactWhole = 9007199254740992.0;

class Writer {
 public:
  explicit Writer(bool indented) : indented_(indented) {}

  bool Write(const JSONValue& value, int depth) {
    if (const auto* object = boost::any_cast<JSONObject>(&value))
      return WriteObject(*object, depth);
    if (const auto* array = boost::any_cast<JSONArray>(&value)) return WriteArray(*array, depth);
    if (const auto* text = boost::any_cast<std::string>(&value)) return WriteString(*text);
    if (const auto* number = boost::any_cast<double>(&value)) return WriteDouble(*number);
    if (const auto* number = boost::any_cast<std::int64_t>(&value)) return WriteChars(*number);
    if (const auto* number = boost::any_cast<std::uint64_t>(&value)) return WriteChars(*number);
    if (const auto* flag = boost::any_cast<bool>(&value)) return Append(*flag ? "true" : "false");
    return boost::any_cast<NullType>(&value) != nullptr && Append("null");
  }

  std::string& Text() { return text_; }

 private:
  bool Append(std::string_view text) {
    text_ += text;
    return true;
  }

  void NewLine(int depth) {
    if (!indented_) return;
    text_ += "\r\n";
    text_.append(static_cast<std::size_t>(depth), '\t');
  }

  template <typename Number, typename... Format>
  bool WriteChars(Number number, Format... format) {
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, number, format...);
    return Append(std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)));
  }

  bool WriteDouble(double number) {
    if (!std::isfinite(number)) return false;
    const bool plain = std::trunc(number) == number && std::abs(number) <= kExactWhole;
    return plain ? WriteChars(number, std::chars_format::fixed) : WriteChars(number);
  }

  bool WriteString(const std::string& text) {
    int errors = 0;
    const std::u16string checked = utility::UTF8to16(text, &errors);
    text_ += '"';
    for (const char c : errors == 0 ? text : utility::UTF16to8(checked)) WriteUnit(c);
    text_ += '"';
    return true;
  }

  void WriteUnit(char c) {
    constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
    constexpr std::string_view kNames = "\"\\bfnrt";
    const auto found = kEscaped.find(c);
    if (found != std::string_view::npos) {
      text_ += '\\';
      text_ += kNames[found];
    } else if (static_cast<unsigned char>(c) < 0x20) {
      constexpr char kHex[] = "0123456789abcdef";
      text_ += "\\u00";
      text_ += kHex[c >> 4];
      text_ += kHex[c & 15];
    } else {
      text_ += c;
    }
  }

  bool WriteObject(const JSONObject& object, int depth) {
    if (depth >= kMaxJSONDepth) return false;
    char before = '{';
    if (object.empty()) text_ += before;
    for (const auto& [key, member] : object) {
      text_ += before;
      before = ',';
      NewLine(depth + 1);
      WriteString(key);
      Append(indented_ ? ": " : ":");
      if (!member || !Write(*member, depth + 1)) return false;
    }
    NewLine(depth);
    text_ += '}';
    return true;
  }

  bool WriteArray(const JSONArray& array, int depth) {
    if (depth >= kMaxJSONDepth) return false;
    char before = '[';
    if (array.empty()) text_ += before;
    for (const auto& element : array) {
      text_ += before;
      before = ',';
      NewLine(depth + 1);
      if (!element || !Write(*element, depth + 1)) return false;
    }
    NewLine(depth);
    text_ += ']';
    return true;
  }

  bool indented_;
  std::string text_;
};

}  // namespace

std::string GetJSONUTF8String(const JSONValue& value, bool indented) {
  Writer writer(indented);
  return writer.Write(value, 0) ? std::move(writer.Text()) : std::string();
}

std::string GetJSONUTF8String(const JSONValuePtr& value, bool indented) {
  return value ? GetJSONUTF8String(*value, indented) : std::string();
}

}  // namespace teskcore::serialization
