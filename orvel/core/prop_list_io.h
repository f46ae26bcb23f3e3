#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "orvel/core/json.h"
#include "orvel/core/prop_list.h"

namespace teskcore::serialization {

/// The tags of the held types, in the order of `PropList::Value`.
inline constexpr std::array<std::string_view, 4> kPropListTags = {"float", "std::uint32_t",
                                                                  "array::float", "tree::any"};
static_assert(std::variant_size_v<proplist::PropList::Value> == kPropListTags.size());

template <typename Sink>
void Write(Sink& sink, const std::vector<float>& values) {
  sink.BeginArray();
  for (const float value : values) sink.Number(static_cast<double>(value));
  sink.EndArray();
}

template <typename Source>
void Read(Source source, std::vector<float>& values) {
  values.clear();
  source.ForEachElement([&values](auto element) { values.push_back(element.ReadFloat()); });
}

template <typename Sink>
void Write(Sink& sink, const proplist::PropList& list) {
  sink.BeginObject();
  for (const auto& [key, held] : list) {
    sink.Key(key);
    sink.BeginObject();
    sink.Key("type");
    sink.Text(kPropListTags[held.index()]);
    sink.Key("value");
    std::visit(
        [&sink](const auto& value) {
          using Held = std::decay_t<decltype(value)>;
          if constexpr (std::is_same_v<Held, float>) {
            sink.Number(static_cast<double>(value));
          } else if constexpr (std::is_same_v<Held, std::uint32_t>) {
            sink.Integer(static_cast<std::int64_t>(value));
          } else if constexpr (std::is_same_v<Held, std::vector<float>>) {
            Write(sink, value);
          } else {
            Write(sink, *value);
          }
        },
        held);
    sink.EndObject();
  }
  sink.EndObject();
}

template <typename Source>
void Read(Source source, proplist::PropList& list);

template <typename Source>
void ReadTagged(const std::string& tag, Source source, const std::string& key,
                proplist::PropList& list) {
  if (tag == kPropListTags[0]) {
    list.SetValue(key, source.ReadFloat());
  } else if (tag == kPropListTags[1]) {
    list.SetValue(key, source.ReadUnsigned());
  } else if (tag == kPropListTags[2]) {
    std::vector<float> values;
    Read(source, values);
    list.SetValue(key, std::move(values));
  } else if (tag == kPropListTags[3]) {
    proplist::PropList child;
    Read(source, child);
    list.SetValue(key, child);
  } else {
    throw BadCast();
  }
}

/// An entry's "type" must come before its "value". In a tree it always does, by the order of the
/// keys.
template <typename Source>
void Read(Source source, proplist::PropList& list) {
  list = {};
  source.ForEachMember([&list](const std::string& key, auto entry) {
    std::optional<std::string> tag;
    bool hasValue = false;
    entry.ForEachMember([&](const std::string& member, auto value) {
      if (member == "type") {
        tag = value.ReadText();
      } else if (member == "value") {
        if (!tag) throw BadCast();
        ReadTagged(*tag, value, key, list);
        hasValue = true;
      } else {
        value.Skip();
      }
    });
    if (!hasValue) throw BadCast();
  });
}

}  // namespace teskcore::serialization
