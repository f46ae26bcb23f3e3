#include "orvel/core/prop_list_json.h"

#include <cstdint>
#include <utility>

#include <boost/numeric/conversion/cast.hpp>

namespace teskcore::serialization {
namespace {

using proplist::PropList;
using Child = std::shared_ptr<const PropList>;
using Converter = JSONConvert<PropList>;

template <typename T>
const T& As(const JSONValue& value) {
  const auto* held = boost::any_cast<T>(&value);
  if (held == nullptr) throw BadCast();
  return *held;
}

JSONValue Write(float value) { return static_cast<double>(value); }
JSONValue Write(std::uint32_t value) { return static_cast<std::int64_t>(value); }
JSONValue Write(const Child& child) { return Converter::ToJSON(*child); }
JSONValue Write(const std::vector<float>& values) {
  JSONValue array = JSONArray();
  for (const float value : values) AppendToArray(array, Write(value));
  return array;
}

std::uint32_t ReadUnsigned(const JSONValue& value) {
  if (const auto* number = boost::any_cast<std::int64_t>(&value)) {
    return boost::numeric_cast<std::uint32_t>(*number);
  }
  if (const auto* number = boost::any_cast<std::uint64_t>(&value)) {
    return boost::numeric_cast<std::uint32_t>(*number);
  }
  return boost::numeric_cast<std::uint32_t>(As<double>(value));
}

std::vector<float> ReadArray(const JSONValue& value) {
  const auto& elements = As<JSONArray>(value);
  std::vector<float> floats;
  floats.reserve(elements.size());
  for (const auto& element : elements) floats.push_back(JSONToFloat(*element));
  return floats;
}

// clang-format off
// tag               as written of a held value's place in PropList::Value, and read back
struct TypeTag { const char* tag; void (*read)(PropList&, const std::string&, const JSONValue&); };
constexpr TypeTag kTypeTags[] = {
  { "float",         [](PropList& l, const std::string& k, const JSONValue& v) { l.SetValue(k, JSONToFloat(v)); } },
  { "std::uint32_t", [](PropList& l, const std::string& k, const JSONValue& v) { l.SetValue(k, ReadUnsigned(v)); } },
  { "array::float",  [](PropList& l, const std::string& k, const JSONValue& v) { l.SetValue(k, ReadArray(v)); } },
  { "tree::any",     [](PropList& l, const std::string& k, const JSONValue& v) { l.SetValue(k, Converter::FromJSON(v)); } },
};
// clang-format on
static_assert(std::variant_size_v<PropList::Value> == std::size(kTypeTags));

const JSONValue& Member(const JSONValue& entry, const char* key) {
  const JSONValuePtr member = GetVariantInObject(entry, key);
  if (!member) throw BadCast();
  return *member;  // kept alive by `entry`
}

void ReadEntry(PropList& list, const std::string& key, const JSONValue& entry) {
  const auto& tag = As<std::string>(Member(entry, "type"));
  for (const auto& type : kTypeTags) {
    if (tag == type.tag) return type.read(list, key, Member(entry, "value"));
  }
  throw BadCast();
}

}  // namespace

JSONValue JSONConvert<PropList>::ToJSON(const PropList& list) {
  JSONValue object = JSONObject();
  for (const auto& [key, held] : list) {
    JSONValue entry = JSONObject();
    AddToObject(entry, "type", JSONValue(std::string(kTypeTags[held.index()].tag)));
    AddToObject(entry, "value", std::visit([](const auto& value) { return Write(value); }, held));
    AddToObject(object, key, entry);
  }
  return object;
}

PropList JSONConvert<PropList>::FromJSON(const JSONValue& value) {
  PropList list;
  for (const auto& [key, entry] : As<JSONObject>(value)) ReadEntry(list, key, *entry);
  return list;
}

}  // namespace teskcore::serialization
