#include "orvel/core/json_sink.h"

#include <charconv>
#include <cmath>
#include <utility>

#include <simdjson.h>

#include "orvel/core/text.h"

namespace teskcore::serialization {
namespace {

// The largest magnitude up to which every whole number is a double of its own.
constexpr double kExactWhole = 9007199254740992.0;

constexpr std::size_t kMaxDigits = 32;

template <typename Number>
void AppendDigits(std::string& text, Number number) {
  char digits[kMaxDigits];
  const auto result = std::to_chars(digits, digits + kMaxDigits, number);
  text.append(digits, result.ptr);
}

bool NeedsEscape(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\'; }

// Whether the text is ASCII that needs no escape. Without a branch on the way, so that it takes
// many bytes at a time.
bool IsPlain(std::string_view text) {
  bool isPlain = true;
  for (const char c : text) isPlain &= static_cast<signed char>(c) >= 0 && !NeedsEscape(c);
  return isPlain;
}

void AppendEscape(std::string& text, char c) {
  constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
  constexpr std::string_view kNames = "\"\\bfnrt";
  const auto found = kEscaped.find(c);
  if (found != kEscaped.npos) {
    text += '\\';
    text += kNames[found];
  } else {
    constexpr char kHex[] = "0123456789abcdef";
    text += "\\u00";
    text += kHex[c >> 4];
    text += kHex[c & 15];
  }
}

}  // namespace

void JSONTextSink::ExpectTimes(std::size_t count) {
  constexpr std::size_t kMost = std::size_t{1} << 26;  // a guess may not ask for all memory
  if (count <= kMost / (text_.size() + 1)) text_.reserve((text_.size() + 1) * count);
}

void JSONTextSink::Key(std::string_view key) {
  BeginItem();
  AppendText(key);
  text_ += indented_ ? ": " : ":";
}

void JSONTextSink::Text(std::string_view text) {
  BeginValue();
  AppendText(text);
}

void JSONTextSink::AppendText(std::string_view text) {
  if (IsPlain(text)) {
    text_ += '"';
    text_ += text;
    text_ += '"';
  } else if (simdjson::validate_utf8(text)) {
    AppendQuoted(text);
  } else {
    AppendQuoted(utility::UTF16to8(utility::UTF8to16(std::string(text))));
  }
}

void JSONTextSink::Number(double number) {
  BeginValue();
  if (!std::isfinite(number)) {
    Fail();
  } else if (std::trunc(number) == number && std::abs(number) <= kExactWhole) {
    if (std::signbit(number)) text_ += '-';
    AppendDigits(text_, static_cast<std::int64_t>(std::abs(number)));
  } else {
    AppendDigits(text_, number);
  }
}

void JSONTextSink::Integer(std::int64_t number) {
  BeginValue();
  AppendDigits(text_, number);
}

void JSONTextSink::Unsigned(std::uint64_t number) {
  BeginValue();
  AppendDigits(text_, number);
}

void JSONTextSink::Bool(bool value) {
  BeginValue();
  text_ += value ? "true" : "false";
}

void JSONTextSink::Null() {
  BeginValue();
  text_ += "null";
}

void JSONTextSink::Begin(char bracket) {
  BeginValue();
  if (open_.size() >= static_cast<std::size_t>(kMaxJSONDepth)) Fail();
  text_ += bracket;
  open_.push_back({.isArray = bracket == '['});
}

void JSONTextSink::End(char bracket) {
  open_.pop_back();
  NewLine();
  text_ += bracket;
}

void JSONTextSink::BeginItem() {
  if (!open_.back().isEmpty) text_ += ',';
  open_.back().isEmpty = false;
  NewLine();
}

void JSONTextSink::BeginValue() {
  if (!open_.empty() && open_.back().isArray) BeginItem();
}

void JSONTextSink::NewLine() {
  if (!indented_) return;
  text_ += "\r\n";
  text_.append(open_.size(), '\t');
}

void JSONTextSink::AppendQuoted(std::string_view text) {
  text_ += '"';
  std::size_t plain = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!NeedsEscape(text[i])) continue;
    text_.append(text, plain, i - plain);
    AppendEscape(text_, text[i]);
    plain = i + 1;
  }
  text_.append(text, plain);
  text_ += '"';
}

void JSONTreeSink::End() {
  const JSONValue value = std::move(open_.back().value);
  open_.pop_back();
  Put(value);
}

void JSONTreeSink::Put(const JSONValue& value) {
  if (open_.empty()) {
    root_ = value;
  } else if (boost::any_cast<JSONArray>(&open_.back().value) != nullptr) {
    AppendToArray(open_.back().value, value);
  } else {
    AddToObject(open_.back().value, open_.back().key, value);
  }
}

}  // namespace teskcore::serialization
