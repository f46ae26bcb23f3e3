#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <typeinfo>
#include <vector>

#include <boost/any.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include "orvel/core/export.h"

namespace teskcore::serialization {

/// A JSON value: a `JSONObject`, a `JSONArray`, a `std::string` in UTF-8, a `double`, a
/// `std::int64_t`, a `std::uint64_t` (only above the signed range), a `bool`, or `G_NullType`.
using JSONValue = boost::any;

/// A value that several owners hold; null where there is none.
using JSONValuePtr = boost::shared_ptr<JSONValue>;

/// The members of an object by their keys.
using JSONObject = std::map<std::string, JSONValuePtr>;

/// The elements of an array.
using JSONArray = std::vector<JSONValuePtr>;

/// The held value of a JSON null.
struct NullType {};

/// The JSON null.
inline constexpr NullType G_NullType{};

/// Raised when a value is of another JSON kind than its reader needs.
class ORVEL_EXPORT BadCast : public std::bad_cast {
 public:
  /// "bad cast".
  const char* what() const noexcept override { return "bad cast"; }
};

/// Arrays and objects may stand this deep inside each other, both when read and when written.
inline constexpr int kMaxJSONDepth = 128;

/// Parses one JSON text (RFC 8259; a leading byte-order mark is passed over). Doubles are correctly
/// rounded, "-0" is the double -0.0, and of several members with one key the last counts. Returns
/// null for text that is not well-formed: invalid UTF-8, anything after the value, a number beyond
/// the double range, or nesting beyond `kMaxJSONDepth`.
ORVEL_EXPORT JSONValuePtr JSONParse(const std::string& text);

/// The same for `length` bytes, which are read only.
ORVEL_EXPORT JSONValuePtr JSONParse(const void* bytes, std::size_t length);

/// The same for a text that ends in a zero.
ORVEL_EXPORT JSONValuePtr JSONParse(const char* zeroTerminated);

/// Writes `value` as UTF-8. Numbers take the shortest text that reads back to the same double;
/// whole numbers have no fraction, and no exponent up to 2^53. Strings are escaped only where JSON
/// demands it; invalid UTF-8 in them becomes U+FFFD. `indented` puts one element or member on a
/// line, tabs before it, CR LF after it. Returns an empty text for what JSON cannot express: a
/// number that is not finite, a held type that is not listed above, nesting beyond `kMaxJSONDepth`.
ORVEL_EXPORT std::string GetJSONUTF8String(const JSONValue& value, bool indented);

/// The same; an empty text for null.
ORVEL_EXPORT std::string GetJSONUTF8String(const JSONValuePtr& value, bool indented);

/// Sets a member. An `object` that holds nothing becomes an object first; raises `BadCast` when it
/// holds another kind, and for a `value` of a type that is not listed above. Characters that end in
/// a zero are taken as a string, a float as a double, and whole numbers of other types as 64-bit
/// ones.
ORVEL_EXPORT void AddToObject(JSONValue& object, const std::string& key, const JSONValue& value);

/// The same for a value that is shared with its other owners.
ORVEL_EXPORT void AddToObject(JSONValue& object, const std::string& key, const JSONValuePtr& value);

/// Appends an element; the same rule for `array`.
ORVEL_EXPORT void AppendToArray(JSONValue& array, const JSONValue& value);

/// The same for a value that is shared with its other owners.
ORVEL_EXPORT void AppendToArray(JSONValue& array, const JSONValuePtr& value);

/// The member `key`, or null when it is absent or `object` is no object.
ORVEL_EXPORT JSONValuePtr GetVariantInObject(const JSONValue& object, const std::string& key);

/// The same; null also when `object` is null.
ORVEL_EXPORT JSONValuePtr GetVariantInObject(const JSONValuePtr& object, const std::string& key);

/// A number held in any of the three ways, as a float. Raises `BadCast` for another kind, and
/// `boost::numeric::bad_numeric_cast` for a number beyond the float range.
ORVEL_EXPORT float JSONToFloat(const JSONValue& value);

/// Converts a `T` to and from a JSON value; each type that can be converted has a specialisation.
template <typename T>
struct JSONConvert;

}  // namespace teskcore::serialization
