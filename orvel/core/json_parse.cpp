#include <utility>
#include <variant>

#include <boost/smart_ptr/make_shared.hpp>

#include "orvel/core/json.h"
#include "orvel/core/json_source.h"

namespace teskcore::serialization {
namespace {

template <typename T>
JSONValuePtr Hold(T value) {
  return boost::make_shared<JSONValue>(std::move(value));
}

JSONValuePtr Build(JSONStreamSource source);

JSONValuePtr BuildObject(JSONStreamSource source) {
  JSONObject object;
  source.ForEachMember([&object](const std::string& key, JSONStreamSource member) {
    object.insert_or_assign(key, Build(member));
  });
  return Hold(std::move(object));
}

JSONValuePtr BuildArray(JSONStreamSource source) {
  JSONArray array;
  source.ForEachElement([&array](JSONStreamSource element) { array.push_back(Build(element)); });
  return Hold(std::move(array));
}

JSONValuePtr Build(JSONStreamSource source) {
  using Kind = JSONStreamSource::Kind;
  switch (source.GetKind()) {
    case Kind::object:
      return BuildObject(source);
    case Kind::array:
      return BuildArray(source);
    case Kind::string:
      return Hold(source.ReadText());
    case Kind::number:
      return std::visit([](auto number) { return Hold(number); }, source.ReadNumber());
    case Kind::boolean:
      return Hold(source.ReadBool());
    case Kind::null:
      break;
  }
  source.ReadNull();
  return Hold(G_NullType);
}

JSONValuePtr Parse(std::string_view text) {
  JSONValuePtr root;
  const auto build = [&root](JSONStreamSource source) { root = Build(source); };
  return ReadJSONStream(text, build) ? root : nullptr;
}

}  // namespace

JSONValuePtr JSONParse(const std::string& text) { return Parse(text); }

JSONValuePtr JSONParse(const void* bytes, std::size_t length) {
  return Parse(std::string_view(static_cast<const char*>(bytes), length));
}

JSONValuePtr JSONParse(const char* zeroTerminated) {
  return zeroTerminated == nullptr ? nullptr : Parse(zeroTerminated);
}

}  // namespace teskcore::serialization
