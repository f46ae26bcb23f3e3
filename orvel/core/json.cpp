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

float JSONToFloat(const JSONValue& value) { return JSONTreeSource(&value).ReadFloat(); }

}  // namespace teskcore::serialization
