#include "orvel/core/prop_list.h"

#include <limits>

#include <boost/numeric/conversion/cast.hpp>
#include <gtest/gtest.h>

#include "orvel/core/prop_list_json.h"

namespace orvel {
namespace {

using teskcore::serialization::BadCast;
using teskcore::serialization::GetJSONUTF8String;
using teskcore::serialization::JSONConvert;
using teskcore::serialization::JSONParse;

PropList MakeList() {
  PropList table;
  table.SetValue("$$$/path=Name", std::vector<float>{0.5f, 0.133166f});
  PropList list;
  list.SetValue("Gain", -15.0f);
  list.SetValue("Standard", std::uint32_t{4294967295u});
  list.SetValue("Table", table);
  return list;
}

TEST(PropList, AnAbsentKeyOrAnotherTypeKeepsTheDefaultAndEmptiesAnArray) {
  PropList list = MakeList();
  for (const char* key : {"absent", "Standard", "Table"}) {
    float number = 6.0f;
    EXPECT_FALSE(list.GetValue(key, number));
    EXPECT_EQ(number, 6.0f);
    std::vector<float> array = {1.0f};
    EXPECT_FALSE(list.GetValue(key, array));
    EXPECT_TRUE(array.empty());
  }
  EXPECT_FALSE(list.GetValue("Gain", list));
  EXPECT_EQ(list, MakeList());
}

TEST(PropList, ComparesNamesTypesAndValuesDeeply) {
  PropList list = MakeList();
  PropList child;
  ASSERT_TRUE(list.GetValue("Table", child));
  child.SetValue("more", std::numeric_limits<float>::quiet_NaN());
  EXPECT_NE(child, PropList(child));
  EXPECT_EQ(list, MakeList());  // a copy was changed, not the list
  list.SetValue("Table", child);
  EXPECT_NE(list, MakeList());
  list = MakeList();
  list.SetValue("Gain", std::uint32_t{0});
  EXPECT_NE(list, MakeList());  // the same key holds another type
  list.RemoveValue("Gain");
  list.RemoveValue("Gain");
  ASSERT_TRUE(list.GetValue("Table", list));  // a tree can take its own child
  list.SetValue("self", list);
  EXPECT_EQ(list.GetCount(), 2u);
}

TEST(PropList, IsWrittenToJsonWithItsTypesAndReadBackEqual) {
  const auto json = JSONConvert<PropList>::ToJSON(MakeList());
  EXPECT_EQ(GetJSONUTF8String(json, false),
            R"({"Gain":{"type":"float","value":-15},)"
            R"("Standard":{"type":"std::uint32_t","value":4294967295},)"
            R"("Table":{"type":"tree::any","value":{"$$$/path=Name":)"
            R"({"type":"array::float","value":[0.5,0.13316600024700165]}}}})");
  EXPECT_EQ(JSONConvert<PropList>::FromJSON(json), MakeList());
  EXPECT_EQ(JSONConvert<PropList>::FromJSON(*JSONParse("{}")), PropList());
}

TEST(PropList, JsonOfTheWrongKindRaisesBadCast) {
  for (const char* text :
       {"[]", "1", R"({"a":1})", R"({"a":{}})", R"({"a":{"type":"float"}})", R"({"a":{"value":1}})",
        R"({"a":{"type":1,"value":1}})", R"({"a":{"type":"double","value":1}})",
        R"({"a":{"type":"float","value":"1"}})", R"({"a":{"type":"float","value":null}})",
        R"({"a":{"type":"std::uint32_t","value":1.5}})",
        R"({"a":{"type":"array::float","value":1}})",
        R"({"a":{"type":"array::float","value":[1,"2"]}})",
        R"({"a":{"type":"tree::any","value":[]}})"}) {
    EXPECT_THROW(JSONConvert<PropList>::FromJSON(*JSONParse(text)), BadCast) << text;
  }
}

TEST(PropList, NumbersOutsideTheirTypeSayOnWhichSide) {
  using boost::numeric::negative_overflow;
  using boost::numeric::positive_overflow;
  const auto read = [](const std::string& type, const std::string& value) {
    return JSONConvert<PropList>::FromJSON(
        *JSONParse(R"({"a":{"type":")" + type + R"(","value":)" + value + "}}"));
  };
  EXPECT_THROW(read("std::uint32_t", "-1"), negative_overflow);
  EXPECT_THROW(read("std::uint32_t", "4294967296"), positive_overflow);
  EXPECT_THROW(read("std::uint32_t", "1e300"), positive_overflow);
  EXPECT_THROW(read("float", "-1e300"), negative_overflow);
  float largest = 0.0f;
  EXPECT_TRUE(read("float", "3.4028235e38").GetValue("a", largest));
  EXPECT_EQ(largest, std::numeric_limits<float>::max());
}

}  // namespace
}  // namespace orvel
