#include "orvel/core/json.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <utility>

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

namespace teskcore::serialization {
namespace {

std::string RoundTrip(const std::string& text) { return GetJSONUTF8String(JSONParse(text), false); }

std::string Nested(int depth) {
  return std::string(static_cast<std::size_t>(depth), '[') +
         std::string(static_cast<std::size_t>(depth), ']');
}

TEST(Json, TextThatIsNotWellFormedIsRefused) {
  // clang-format off
  const std::string cases[] = {
      "", " ", "{", "}", "[1,]", "[,1]", "[1 2]", "{\"a\":1,}", "{\"a\" 1}", "{a:1}", "{\"a\":}",
      "{1:2}", "01", "+1", "1.", ".5", "1e", "-", "0x10", "NaN", "Infinity", "-Infinity", "1e999",
      "nul", "nulll", "tru", "falsee", "'a'", "\"a", "\"\\x\"", "\"\\u12\"", "\"\t\"", "\"a\nb\"",
      "1 2", "{} {}", "[] x", "\"a\" \"b\"", "null null", "true,", "[1]]", "{\"a\":1}}",
      "[\"\\ud800\"]", "\"\xC3\"", "[\"\xFF\"]", "\"\xED\xA0\x80\"", "\"\xC0\xAF\"", "// c\n1",
      "[nan]", "[1}", "{\"a\":[}", Nested(kMaxJSONDepth + 1), Nested(100000),
      std::string(100000, '['), std::string("1\0", 2),
  };
  // clang-format on
  for (const auto& text : cases) EXPECT_EQ(JSONParse(text), nullptr) << text.substr(0, 40);
  EXPECT_EQ(JSONParse(static_cast<const char*>(nullptr)), nullptr);
}

TEST(Json, ValuesComeBackAsTheyWereWritten) {
  // clang-format off
  const std::string cases[] = {
      "null", "true", "false", "0", "-1", "1.5", "\"\"", "[]", "{}", "[[],{}]",
      "9223372036854775807", "-9223372036854775808", "18446744073709551615", "-0",
      "{\"a\":1,\"b\":[1,2.5,\"x\",null]}", "\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u001f\"",
      "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA7/\"", Nested(kMaxJSONDepth),
      "0.13316600024700165",
  };
  // clang-format on
  for (const auto& text : cases) EXPECT_EQ(RoundTrip(text), text);
  EXPECT_EQ(RoundTrip("\xEF\xBB\xBF [ 1 , 2 ]\r\n"), "[1,2]");
  EXPECT_EQ(RoundTrip("[1e15,-21.0,9007199254740992.0,[true,false],1e-400]"),
            "[1000000000000000,-21,9007199254740992,[true,false],0]");
  EXPECT_EQ(RoundTrip("\"\\u00e9\\ud83c\\udfa7\\/\""), "\"\xC3\xA9\xF0\x9F\x8E\xA7/\"");
  EXPECT_EQ(RoundTrip("{\"b\":1,\"a\":2,\"b\":3}"), "{\"a\":2,\"b\":3}");
}

TEST(Json, EveryFloatSurvivesWriteAndRead) {
  std::mt19937 random(20240917);
  const auto check = [](std::uint32_t bits) {
    const auto value = std::bit_cast<float>(bits);
    if (value - value != 0.0f) return;  // not finite
    const JSONValue held = static_cast<double>(value);
    const JSONValuePtr parsed = JSONParse(GetJSONUTF8String(held, false));
    ASSERT_NE(parsed, nullptr) << bits;
    ASSERT_EQ(std::bit_cast<std::uint32_t>(JSONToFloat(*parsed)), bits);
  };
  for (int i = 0; i < 50000; ++i) check(static_cast<std::uint32_t>(random()));
  for (std::uint32_t exponent = 0; exponent < 512; ++exponent) {
    for (const std::uint32_t mantissa : {0u, 1u, 0x7FFFFFu}) check(exponent << 23 | mantissa);
  }
}

TEST(Json, WhatJsonCannotExpressIsNotWritten) {
  EXPECT_EQ(GetJSONUTF8String(JSONValue(std::numeric_limits<double>::quiet_NaN()), false), "");
  EXPECT_EQ(GetJSONUTF8String(JSONValue(std::numeric_limits<double>::infinity()), false), "");
  EXPECT_EQ(GetJSONUTF8String(JSONValue(), false), "");
  EXPECT_EQ(GetJSONUTF8String(JSONValue(1.0f), false), "");
  JSONValue deep = 1.0;
  for (int i = 0; i <= kMaxJSONDepth; ++i) {
    JSONValue array;
    AppendToArray(array, deep);
    deep = array;
  }
  EXPECT_EQ(GetJSONUTF8String(deep, false), "");
  const JSONValuePtr loop = boost::make_shared<JSONValue>(JSONArray(2));
  for (auto& element : boost::any_cast<JSONArray&>(*loop)) element = loop;
  EXPECT_EQ(GetJSONUTF8String(loop, false), "");
  *loop = JSONArray();
  JSONValue broken;
  AddToObject(broken, "bad", JSONValue(std::string("a\xFFz")));
  EXPECT_EQ(GetJSONUTF8String(broken, false), "{\"bad\":\"a\xEF\xBF\xBDz\"}");
}

TEST(Json, TreesAreBuiltOnlyOfTheirKind) {
  JSONValue array;
  AppendToArray(array, "text");
  AppendToArray(array, 1.5f);
  AppendToArray(array, -1);
  AppendToArray(array, 2u);
  AppendToArray(array, ~0ull);
  EXPECT_EQ(GetJSONUTF8String(array, false), "[\"text\",1.5,-1,2,18446744073709551615]");
  EXPECT_THROW(AppendToArray(array, static_cast<const char*>(nullptr)), BadCast);
  JSONValue object;
  AddToObject(object, "key", JSONValue(1.0));
  EXPECT_THROW(AddToObject(object, "none", JSONValue()), BadCast);
  EXPECT_THROW(AppendToArray(object, JSONValue(1.0)), BadCast);
  EXPECT_THROW(JSONToFloat(object), std::bad_cast);
  EXPECT_EQ(GetVariantInObject(object, "other"), nullptr);
  EXPECT_EQ(GetVariantInObject(JSONValue(1.0), "key"), nullptr);
  EXPECT_EQ(JSONToFloat(*GetVariantInObject(object, "key")), 1.0f);
  // A pointer that is taken for a value, as boost::any takes anything.
  const JSONValue pointer = boost::make_shared<JSONValue>(object);
  EXPECT_EQ(JSONToFloat(GetVariantInObject(pointer, "key")), 1.0f);
  AppendToArray(array = JSONArray(), pointer);
  EXPECT_EQ(GetJSONUTF8String(array, false), "[{\"key\":1}]");
  EXPECT_EQ(GetJSONUTF8String(pointer, false), "{\"key\":1}");
}

}  // namespace
}  // namespace teskcore::serialization
