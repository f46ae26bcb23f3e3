#include <cstring>
#include <string_view>
#include <utility>

#include <boost/smart_ptr/make_shared.hpp>
#include <simdjson.h>

#include "orvel/core/json.h"

namespace teskcore::serialization {
namespace {

namespace ondemand = simdjson::ondemand;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Errors of the parser travel as its own exceptions up to Parse, which turns them into "not
// well-formed".
class TreeBuilder {
 public:
  template <typename Source>
  JSONValuePtr Build(Source& source, int depth) {
    switch (simdjson::simdjson_result<ondemand::json_type>(source.type()).value()) {
      case ondemand::json_type::object:
        return BuildObject(source.get_object(), depth);
      case ondemand::json_type::array:
        return BuildArray(source.get_array(), depth);
      case ondemand::json_type::string:
        return Hold(std::string(std::string_view(source.get_string())));
      case ondemand::json_type::number:
        return BuildNumber(source);
      case ondemand::json_type::boolean:
        return Hold(bool(source.get_bool()));
      case ondemand::json_type::null:
        if (!bool(source.is_null())) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
        return Hold(G_NullType);
    }
    throw simdjson::simdjson_error(simdjson::TAPE_ERROR);
  }

 private:
  template <typename T>
  static JSONValuePtr Hold(T&& value) {
    return boost::make_shared<JSONValue>(std::forward<T>(value));
  }

  static void CheckDepth(int depth) {
    if (depth >= kMaxJSONDepth) throw simdjson::simdjson_error(simdjson::DEPTH_ERROR);
  }

  JSONValuePtr BuildObject(ondemand::object source, int depth) {
    CheckDepth(depth);
    JSONObject object;
    for (auto field : source) {
      const std::string_view key = field.unescaped_key();
      // The key lives in the parser's buffer: it is copied before the value is read.
      std::string name(key);
      ondemand::value value = field.value();
      object.insert_or_assign(std::move(name), Build(value, depth + 1));
    }
    return Hold(std::move(object));
  }

  JSONValuePtr BuildArray(ondemand::array source, int depth) {
    CheckDepth(depth);
    JSONArray array;
    for (ondemand::value element : source) array.push_back(Build(element, depth + 1));
    return Hold(std::move(array));
  }

  template <typename Source>
  static JSONValuePtr BuildNumber(Source& source) {
    std::string_view token = source.raw_json_token();
    const bool negative = token.starts_with('-');
    const ondemand::number number = source.get_number();
    switch (number.get_number_type()) {
      case ondemand::number_type::signed_integer:
        if (number.get_int64() == 0 && negative) return Hold(-0.0);
        return Hold(number.get_int64());
      case ondemand::number_type::unsigned_integer:
        return Hold(number.get_uint64());
      case ondemand::number_type::floating_point_number:
        break;
    }
    return Hold(number.get_double());
  }
};

JSONValuePtr Parse(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  try {
    ondemand::parser parser;
    const simdjson::padded_string padded(text);
    ondemand::document document = parser.iterate(padded);
    JSONValuePtr result = TreeBuilder().Build(document, 0);
    const bool atEnd = document.current_location().error() == simdjson::OUT_OF_BOUNDS;
    return atEnd ? result : nullptr;
  } catch (const simdjson::simdjson_error&) {
    return nullptr;
  }
}

}  // namespace

JSONValuePtr JSONParse(const std::string& text) { return Parse(text); }

JSONValuePtr JSONParse(const void* bytes, std::size_t length) {
  return Parse(std::string_view(static_cast<const char*>(bytes), length));
}

JSONValuePtr JSONParse(const char* zeroTerminated) { return Parse(zeroTerminated); }

}  // namespace teskcore::serialization
