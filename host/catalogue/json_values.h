#pragma once

#include <initializer_list>
#include <utility>

#include "orvel/orvel.h"

namespace orvelhost {

/// An object of these members, in their order.
inline teskcore::serialization::JSONValue MakeObject(
    std::initializer_list<std::pair<const char*, teskcore::serialization::JSONValue>> members) {
  teskcore::serialization::JSONValue object = teskcore::serialization::JSONObject();
  for (const auto& [key, value] : members) {
    teskcore::serialization::AddToObject(object, key, value);
  }
  return object;
}

/// An array of what `make` gives for each entry.
template <typename List, typename Make>
teskcore::serialization::JSONValue MakeArray(const List& list, const Make& make) {
  teskcore::serialization::JSONValue array = teskcore::serialization::JSONArray();
  for (const auto& entry : list) teskcore::serialization::AppendToArray(array, make(entry));
  return array;
}

template <typename List>
teskcore::serialization::JSONValue MakeArray(const List& list) {
  return MakeArray(list,
                   [](const auto& entry) -> teskcore::serialization::JSONValue { return entry; });
}

}  // namespace orvelhost
