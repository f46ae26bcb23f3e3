#include "orvel/core/json_source.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <locale>
#include <sstream>
#include <system_error>

#include <boost/numeric/conversion/cast.hpp>

namespace teskcore::serialization {
namespace {

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
    while (at < token.size() && token[at] >= '0' && token[at] <= '9') ++at;
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

std::uint32_t ToUnsigned(double number) {
  if (std::trunc(number) != number) throw BadCast();
  return boost::numeric_cast<std::uint32_t>(number);
}
std::uint32_t ToUnsigned(std::int64_t number) { return boost::numeric_cast<std::uint32_t>(number); }
std::uint32_t ToUnsigned(std::uint64_t number) {
  return boost::numeric_cast<std::uint32_t>(number);
}

// What rounds to the largest float is one: shortened, that float's own text is above it.
float ToFloat(double number) {
  const auto rounded = static_cast<float>(number);
  if (!std::isinf(rounded)) return rounded;
  if (number < 0.0) throw boost::numeric::negative_overflow();
  throw boost::numeric::positive_overflow();
}
float ToFloat(std::int64_t number) { return static_cast<float>(number); }
float ToFloat(std::uint64_t number) { return static_cast<float>(number); }

template <typename Convert>
auto ConvertHeldNumber(const JSONValue* value, Convert convert) {
  if (const auto* number = boost::any_cast<double>(value)) return convert(*number);
  if (const auto* number = boost::any_cast<std::int64_t>(value)) return convert(*number);
  if (const auto* number = boost::any_cast<std::uint64_t>(value)) return convert(*number);
  throw BadCast();
}

constexpr auto kToFloat = [](auto number) { return ToFloat(number); };
constexpr auto kToUnsigned = [](auto number) { return ToUnsigned(number); };

}  // namespace

float JSONTreeSource::ReadFloat() const { return ConvertHeldNumber(value_, kToFloat); }

std::uint32_t JSONTreeSource::ReadUnsigned() const {
  return ConvertHeldNumber(value_, kToUnsigned);
}

void JSONStreamSource::ReadNull() {
  if (!value_.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
}

std::variant<std::int64_t, std::uint64_t, double> JSONStreamSource::ReadNumber() {
  std::string_view token = value_.raw_json_token();
  token = token.substr(0, token.find_last_not_of(" \t\r\n") + 1);
  if (!IsNumber(token)) throw simdjson::simdjson_error(simdjson::NUMBER_ERROR);
  std::int64_t whole = 0;
  if (ReadWhole(token, whole) && token != "-0") return whole;
  std::uint64_t large = 0;
  if (token.front() != '-' && ReadWhole(token, large)) return large;
  return ReadDouble(token);
}

float JSONStreamSource::ReadFloat() { return std::visit(kToFloat, ReadNumber()); }

std::uint32_t JSONStreamSource::ReadUnsigned() { return std::visit(kToUnsigned, ReadNumber()); }

void JSONStreamSource::Skip() {
  switch (GetKind()) {
    case Kind::object:
      return ForEachMember([](const std::string&, JSONStreamSource member) { member.Skip(); });
    case Kind::array:
      return ForEachElement([](JSONStreamSource element) { element.Skip(); });
    case Kind::string:
      return static_cast<void>(ReadText());
    case Kind::number:
      return static_cast<void>(ReadNumber());
    case Kind::boolean:
      return static_cast<void>(ReadBool());
    case Kind::null:
      return ReadNull();
  }
}

void JSONStreamSource::CheckDepth() const {
  if (depth_ >= kMaxJSONDepth) throw simdjson::simdjson_error(simdjson::DEPTH_ERROR);
}

std::string WrapJSONText(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::string wrapped;
  wrapped.reserve(text.size() + 2 + simdjson::SIMDJSON_PADDING);
  wrapped.append("[").append(text).append("]");
  return wrapped;
}

}  // namespace teskcore::serialization
