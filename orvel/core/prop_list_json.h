#pragma once

#include "orvel/core/export.h"
#include "orvel/core/json.h"
#include "orvel/core/prop_list.h"

namespace teskcore::serialization {

/// A property list as a JSON object whose every member is {"type": tag, "value": value}, with the
/// tags "float", "std::uint32_t", "array::float" and "tree::any".
template <>
struct ORVEL_EXPORT JSONConvert<proplist::PropList> {
  /// Keeps order and types.
  static JSONValue ToJSON(const proplist::PropList& list);

  /// Raises `BadCast` for a value of the wrong JSON kind, a fraction where a whole number belongs,
  /// a missing "type" or "value" and an unknown tag, and `boost::numeric::bad_numeric_cast` for a
  /// number outside its type's range.
  static proplist::PropList FromJSON(const JSONValue& value);
};

}  // namespace teskcore::serialization
