#include <cstdint>
#include <string>

#include "orvel/core/json.h"
#include "orvel/core/json_sink.h"

namespace teskcore::serialization {
namespace {

// Ends at the first failure: beyond it the depth of a tree is not bounded.
void Write(const JSONValuePtr& value, JSONTextSink& sink);

void Write(const JSONValue& value, JSONTextSink& sink) {
  if (sink.HasFailed()) return;
  if (const auto* object = boost::any_cast<JSONObject>(&value)) {
    sink.BeginObject();
    for (const auto& [key, member] : *object) {
      sink.Key(key);
      Write(member, sink);
    }
    sink.EndObject();
  } else if (const auto* array = boost::any_cast<JSONArray>(&value)) {
    sink.BeginArray();
    for (const auto& element : *array) Write(element, sink);
    sink.EndArray();
  } else if (const auto* text = boost::any_cast<std::string>(&value)) {
    sink.Text(*text);
  } else if (const auto* number = boost::any_cast<double>(&value)) {
    sink.Number(*number);
  } else if (const auto* whole = boost::any_cast<std::int64_t>(&value)) {
    sink.Integer(*whole);
  } else if (const auto* large = boost::any_cast<std::uint64_t>(&value)) {
    sink.Unsigned(*large);
  } else if (const auto* flag = boost::any_cast<bool>(&value)) {
    sink.Bool(*flag);
  } else if (boost::any_cast<NullType>(&value) != nullptr) {
    sink.Null();
  } else if (const auto* pointer = boost::any_cast<JSONValuePtr>(&value)) {
    Write(*pointer, sink);
  } else {
    sink.Fail();
  }
}

void Write(const JSONValuePtr& value, JSONTextSink& sink) {
  if (value) {
    Write(*value, sink);
  } else {
    sink.Fail();
  }
}

}  // namespace

std::string GetJSONUTF8String(const JSONValue& value, bool indented) {
  JSONTextSink sink(indented);
  Write(value, sink);
  return sink.HasFailed() ? std::string() : sink.TakeText();
}

std::string GetJSONUTF8String(const JSONValuePtr& value, bool indented) {
  return value ? GetJSONUTF8String(*value, indented) : std::string();
}

}  // namespace teskcore::serialization
