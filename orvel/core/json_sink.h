#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvel/core/json.h"

namespace teskcore::serialization {

// The two sinks share the operations that a record needs, so that its writing stands once: a value
// is one of the scalars, or a container's begin, its members (each a key and a value) or elements,
// and its end.

/// Writes text, as `GetJSONUTF8String` promises it.
class JSONTextSink {
 public:
  explicit JSONTextSink(bool indented) : indented_(indented) {}

  void BeginObject() { Begin('{'); }
  void EndObject() { End('}'); }
  void BeginArray() { Begin('['); }
  void EndArray() { End(']'); }
  void Key(std::string_view key);

  void Text(std::string_view text);
  void Number(double number);
  void Integer(std::int64_t number);
  void Unsigned(std::uint64_t number);
  void Bool(bool value);
  void Null();

  /// The whole text will be about `count` times as long as it is now.
  void ExpectTimes(std::size_t count);

  /// Something was given that JSON cannot express; the text is then of no use.
  void Fail() { failed_ = true; }
  bool HasFailed() const { return failed_; }
  std::string TakeText() { return std::move(text_); }

 private:
  struct Container {
    bool isArray;
    bool isEmpty = true;
  };

  void Begin(char bracket);
  void End(char bracket);
  void BeginItem();
  void BeginValue();
  void NewLine();
  void AppendText(std::string_view text);
  void AppendQuoted(std::string_view text);

  bool indented_;
  bool failed_ = false;
  std::string text_;
  std::vector<Container> open_;
};

/// Builds a value tree.
class JSONTreeSink {
 public:
  void BeginObject() { open_.push_back({.value = JSONObject()}); }
  void EndObject() { End(); }
  void BeginArray() { open_.push_back({.value = JSONArray()}); }
  void EndArray() { End(); }
  void Key(std::string_view key) { open_.back().key = key; }

  void Text(std::string_view text) { Put(std::string(text)); }
  void Number(double number) { Put(number); }
  void Integer(std::int64_t number) { Put(number); }

  const JSONValue& GetRoot() const { return root_; }

 private:
  struct Container {
    JSONValue value;
    std::string key{};
  };

  void End();
  void Put(const JSONValue& value);

  JSONValue root_;
  std::vector<Container> open_;
};

}  // namespace teskcore::serialization
