#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <variant>

#include <simdjson.h>

#include "orvel/core/json.h"

namespace teskcore::serialization {

// The two sources share the operations that a record needs, so that its reading stands once:
// `IsObject`; `ForEachMember` and `ForEachElement`, which hand over each value as a source of its
// own, to be read or skipped; and the scalars. What is of another kind than asked for raises
// `BadCast` from a tree, and some exception or other from a stream.

/// The value itself where `value` holds a pointer to one, as a pointer handed over for a value
/// does, since `boost::any` takes anything; null for a null pointer.
inline const JSONValue* FollowPointers(const JSONValue* value) {
  while (const auto* pointer = boost::any_cast<JSONValuePtr>(value)) value = pointer->get();
  return value;
}

/// Reads a value tree; null stands for a value that is missing in a tree built by hand.
class JSONTreeSource {
 public:
  explicit JSONTreeSource(const JSONValue* value) : value_(FollowPointers(value)) {}

  bool IsObject() const { return value_ != nullptr && value_->type() == typeid(JSONObject); }

  /// `read` takes (key, source), in the order of the keys.
  template <typename Read>
  void ForEachMember(Read read) const {
    for (const auto& [key, member] : As<JSONObject>()) read(key, JSONTreeSource(member.get()));
  }
  template <typename Read>
  void ForEachElement(Read read) const {
    for (const auto& element : As<JSONArray>()) read(JSONTreeSource(element.get()));
  }

  std::string ReadText() const { return As<std::string>(); }
  float ReadFloat() const;
  std::uint32_t ReadUnsigned() const;
  void Skip() const {}

 private:
  template <typename T>
  const T& As() const {
    const auto* held = boost::any_cast<T>(value_);
    if (held == nullptr) throw BadCast();
    return *held;
  }

  const JSONValue* value_;
};

/// Reads text as it goes by, once. A value that is neither read nor skipped is not checked.
class JSONStreamSource {
 public:
  using Value = simdjson::ondemand::value;
  using Kind = simdjson::ondemand::json_type;

  JSONStreamSource(Value value, int depth) : value_(value), depth_(depth) {}

  Kind GetKind() { return value_.type().value(); }
  bool IsObject() { return GetKind() == Kind::object; }

  /// `read` takes (key, source), in the order of the text, keys that stand twice included.
  template <typename Read>
  void ForEachMember(Read read) {
    CheckDepth();
    for (auto field : simdjson::ondemand::object(value_.get_object())) {
      const std::string key(std::string_view(field.unescaped_key()));
      read(key, JSONStreamSource(Value(field.value()), depth_ + 1));
    }
  }
  template <typename Read>
  void ForEachElement(Read read) {
    CheckDepth();
    for (Value element : simdjson::ondemand::array(value_.get_array())) {
      read(JSONStreamSource(element, depth_ + 1));
    }
  }

  std::string ReadText() { return std::string(std::string_view(value_.get_string())); }
  bool ReadBool() { return bool(value_.get_bool()); }
  void ReadNull();
  std::variant<std::int64_t, std::uint64_t, double> ReadNumber();
  float ReadFloat();
  std::uint32_t ReadUnsigned();

  /// Passes over the value, checking it as if it were read.
  void Skip();

 private:
  void CheckDepth() const;

  Value value_;
  int depth_;
};

/// A text made ready to be read: the one element of an array. The parser is less strict, and less
/// exact, with a value that stands alone.
std::string WrapJSONText(std::string_view text);

/// Calls `read` with a parser: for a text of usual length with one that is kept by the thread,
/// since its buffers cost more than the reading. `read` must not read another text meanwhile.
template <typename Read>
bool WithParser(std::size_t length, Read read) {
  constexpr std::size_t kUsualLength = 65536;
  thread_local simdjson::ondemand::parser kept(kUsualLength + 2 + simdjson::SIMDJSON_PADDING);
  if (length <= kUsualLength) return read(kept);
  simdjson::ondemand::parser parser;
  return read(parser);
}

/// Hands `text` as a `JSONStreamSource` to `read`. False when it is not well-formed, and when
/// `read` throws: a tree then tells which of the two, and what is wrong. What `read` did until then
/// is of no use.
template <typename Read>
bool ReadJSONStream(std::string_view text, Read read) {
  std::string wrapped = WrapJSONText(text);
  try {
    return WithParser(text.size(), [&wrapped, &read](simdjson::ondemand::parser& parser) {
      simdjson::ondemand::document document = parser.iterate(wrapped);
      int elements = 0;
      for (JSONStreamSource::Value element : simdjson::ondemand::array(document.get_array())) {
        if (++elements > 1) return false;
        read(JSONStreamSource(element, 0));
      }
      return elements == 1 && document.current_location().error() == simdjson::OUT_OF_BOUNDS;
    });
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace teskcore::serialization
