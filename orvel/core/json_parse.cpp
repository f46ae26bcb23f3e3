#include <charconv>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include <boost/smart_ptr/make_shared.hpp>
#include <simdjson.h>

#include "orvel/core/json.h"

namespace teskcore::serialization {
namespace {

namespace ondemand = simdjson::ondemand;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The grammar of RFC 8259, section 6.
bool IsNumber(std::string_view token) {
  std::size_t at = 0;
  const auto skip = [&](std::string_view any) {
    const bool found = at < token.size() && any.find(token[at]) != any.npos;
    at += found ? 1U : 0U;
    return found;
  };
  const auto skipDigits = [&] {
    const std::size_t start = at;
    while (skip("0123456789")) {
    }
    return at > start;
  };
  skip("-");
  if (!skip("0") && !skipDigits()) return false;
  if (skip(".") && !skipDigits()) return false;
  if (skip("eE")) {
    skip("+-");
    if (!skipDigits()) return false;
  }
  return at == token.size();
}

template <typename Whole>
bool ReadWhole(std::string_view token, Whole& value) {
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  return error == std::errc() && end == token.data() + token.size();
}

// The parser's own doubles are wrong when they have more than 19 digits (simdjson 3.0), so the
// standard library's serve.
double ReadDouble(std::string_view token) {
  double value = 0.0;
  if (std::from_chars(token.data(), token.data() + token.size(), value).ec == std::errc()) {
    return value;
  }
  // Too large or too small. A stream tells the two apart: it fails for the one, and rounds the
  // other to nothing.
  std::istringstream stream{std::string(token)};
  stream.imbue(std::locale::classic());
  if (!(stream >> value)) throw simdjson::simdjson_error(simdjson::NUMBER_ERROR);
  return value;
}

// Errors of the parser travel as its own exceptions up to Parse, which turns them into "not
// well-formed".
class TreeBuilder {
 public:
  JSONValuePtr Build(ondemand::value source, int depth) {
    switch (source.type().value()) {
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
        if (!source.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
        return Hold(G_NullType);
    }
    throw simdjson::simdjson_error(simdjson::TAPE_ERROR);
  }

 private:
  template <typename T>
  static JSONValuePtr Hold(T value) {
    return boost::make_shared<JSONValue>(std::move(value));
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

  static JSONValuePtr BuildNumber(ondemand::value source) {
    std::string_view token = source.raw_json_token();
    token = token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
    if (!IsNumber(token)) throw simdjson::simdjson_error(simdjson::NUMBER_ERROR);
    std::int64_t whole = 0;
    if (ReadWhole(token, whole) && token != "-0") return Hold(whole);
    std::uint64_t large = 0;
    if (token.front() != '-' && ReadWhole(token, large)) return Hold(large);
    return Hold(ReadDouble(token));
  }
};

// The text is read as the one element of an array: the parser is less strict, and less exact, with
// a value that stands alone.
JSONValuePtr Parse(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::string wrapped;
  wrapped.reserve(text.size() + 2 + simdjson::SIMDJSON_PADDING);
  wrapped.append("[").append(text).append("]");
  try {
    ondemand::parser parser;
    ondemand::document document = parser.iterate(wrapped);
    JSONValuePtr result;
    for (ondemand::value element : document.get_array()) {
      if (result) return nullptr;
      result = TreeBuilder().Build(element, 0);
    }
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
