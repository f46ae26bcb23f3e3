#include "orvel/core/json.h"

#include <cstdint>

#include <boost/numeric/conversion/cast.hpp>
#include <boost/smart_ptr/make_shared.hpp>

namespace teskcore::serialization {
namespace {

template <typename Container>
Container& Open(JSONValue& value) {
  if (value.empty()) value = Container();
  auto* container = boost::any_cast<Container>(&value);
  if (container == nullptr) throw BadCast();
  return *container;
}

}  // namespace

void AddToObject(JSONValue& object, const std::string& key, const JSONValue& value) {
  AddToObject(object, key, boost::make_shared<JSONValue>(value));
}

void AddToObject(JSONValue& object, const std::string& key, const JSONValuePtr& value) {
  Open<JSONObject>(object).insert_or_assign(key, value);
}

void AppendToArray(JSONValue& array, const JSONValue& value) {
  AppendToArray(array, boost::make_shared<JSONValue>(value));
}

void AppendToArray(JSONValue& array, const JSONValuePtr& value) {
  Open<JSONArray>(array).push_back(value);
}

JSONValuePtr GetVariantInObject(const JSONValue& object, const std::string& key) {
  const auto* members = boost::any_cast<JSONObject>(&object);
  if (members == nullptr) return nullptr;
  const auto found = members->find(key);
  return found == members->end() ? nullptr : found->second;
}

JSONValuePtr GetVariantInObject(const JSONValuePtr& object, const std::string& key) {
  return object ? GetVariantInObject(*object, key) : nullptr;
}

float JSONToFloat(const JSONValue& value) {
  if (const auto* number = boost::any_cast<double>(&value))
    return boost::numeric_cast<float>(*number);
  if (const auto* number = boost::any_cast<std::int64_t>(&value))
    return static_cast<float>(*number);
  if (const auto* number = boost::any_cast<std::uint64_t>(&value))
    return static_cast<float>(*number);
  throw BadCast();
}

}  // namespace teskcore::serialization
