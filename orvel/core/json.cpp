#include "orvel/core/json.h"

#include <boost/smart_ptr/make_shared.hpp>

#include "orvel/core/json_source.h"

namespace teskcore::serialization {
namespace {

template <typename Container>
Container& Open(JSONValue& value) {
  if (value.empty()) value = Container();
  auto* container = boost::any_cast<Container>(&value);
  if (container == nullptr) throw BadCast();
  return *container;
}

template <typename... Types>
bool HoldsOneOf(const JSONValue& value) {
  return ((value.type() == typeid(Types)) || ...);
}

// Stores the value in `kept` when it is of one of the types, as a `Kept`.
template <typename Kept, typename... Types>
bool KeepAs(const JSONValue& value, JSONValue& kept) {
  const auto keep = [&kept](const auto* held) {
    if (held != nullptr) kept = static_cast<Kept>(*held);
    return held != nullptr;
  };
  return (keep(boost::any_cast<Types>(&value)) || ...);
}

// What C++ makes of a literal is often a near relative of a type that JSON has.
JSONValuePtr Hold(const JSONValue& value) {
  if (const auto* pointer = boost::any_cast<JSONValuePtr>(&value)) return *pointer;
  if (HoldsOneOf<JSONObject, JSONArray, std::string, double, std::int64_t, std::uint64_t, bool,
                 NullType>(value)) {
    return boost::make_shared<JSONValue>(value);
  }
  JSONValue kept;
  if (const auto* text = boost::any_cast<const char*>(&value);
      text != nullptr && *text != nullptr) {
    kept = std::string(*text);
  } else if (!KeepAs<double, float>(value, kept) &&
             !KeepAs<std::int64_t, int, unsigned, short, unsigned short, long long>(value, kept) &&
             !KeepAs<std::uint64_t, unsigned long long>(value, kept)) {
    throw BadCast();
  }
  return boost::make_shared<JSONValue>(kept);
}

}  // namespace

void AddToObject(JSONValue& object, const std::string& key, const JSONValue& value) {
  AddToObject(object, key, Hold(value));
}

void AddToObject(JSONValue& object, const std::string& key, const JSONValuePtr& value) {
  Open<JSONObject>(object).insert_or_assign(key, value);
}

void AppendToArray(JSONValue& array, const JSONValue& value) { AppendToArray(array, Hold(value)); }

void AppendToArray(JSONValue& array, const JSONValuePtr& value) {
  Open<JSONArray>(array).push_back(value);
}

JSONValuePtr GetVariantInObject(const JSONValue& object, const std::string& key) {
  const auto* members = boost::any_cast<JSONObject>(FollowPointers(&object));
  if (members == nullptr) return nullptr;
  const auto found = members->find(key);
  return found == members->end() ? nullptr : found->second;
}

JSONValuePtr GetVariantInObject(const JSONValuePtr& object, const std::string& key) {
  return object ? GetVariantInObject(*object, key) : nullptr;
}

float JSONToFloat(const JSONValue& value) { return JSONTreeSource(&value).ReadFloat(); }

}  // namespace teskcore::serialization
