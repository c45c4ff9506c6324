#include "Kifo_iOS_Common_Kit/ports/Value.h"

#include <cmath>
#include <limits>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

Value nested(int depth, bool inMaps) {
  Value value("innermost");
  for (int i = 0; i < depth; ++i) {
    value = inMaps ? Value{{"k", std::move(value)}} : Value::list({std::move(value)});
  }
  return value;
}

TEST(ValueTest, KeepsTheKindOfWhatItIsMadeFrom) {
  const Value::Map made{{"int", -3},
                        {"unsigned", 3u},
                        {"size", std::size_t(7)},
                        {"largest", UINT64_MAX},
                        {"float", 0.5f},
                        {"text", "text"},
                        {"view", std::string_view("view")},
                        {"no text", static_cast<const char*>(nullptr)},
                        {"flag", true},
                        {"tags", Value::list({"a", 1})},
                        {"customer", {{"name", "Ada"}}}};
  EXPECT_EQ(jsonFromValue(made),
            R"({"customer":{"name":"Ada"},"flag":true,"float":0.5,"int":-3,)"
            R"("largest":18446744073709551615,"no text":null,"size":7,"tags":["a",1],)"
            R"("text":"text","unsigned":3,"view":"view"})");
  EXPECT_EQ(made.at("size").kind(), Value::Kind::integer);
  EXPECT_EQ(made.at("largest").kind(), Value::Kind::unsignedInteger);
  EXPECT_EQ(made.at("largest").asInteger(), std::nullopt);
  EXPECT_EQ(made.at("largest").asUnsigned(), UINT64_MAX);
  EXPECT_EQ(made.at("int").asUnsigned(), std::nullopt);
  EXPECT_EQ(made.at("int").asNumber(), -3.0);
  EXPECT_EQ(made.at("flag").asBoolean(), true);
  EXPECT_EQ(made.at("flag").asText(), nullptr);
}

TEST(ValueTest, AnAbsentMemberOrElementIsNull) {
  const Value value{{"list", Value::list({1})}};
  EXPECT_EQ(value["list"][0], 1);
  EXPECT_TRUE(value["list"][1].isNull());
  EXPECT_TRUE(value["list"]["key"].isNull());
  EXPECT_TRUE(value["absent"]["below"].isNull());
}

TEST(ValueTest, ComparesKindAndContent) {
  EXPECT_EQ(Value(3u), Value(3));
  EXPECT_NE(Value(3), Value(3.0));
  EXPECT_NE(Value(0), Value(false));
  EXPECT_NE(Value(), Value(false));
  EXPECT_NE(Value::list(), Value::map());
  EXPECT_EQ((Value{{"a", Value::list({1, "b"})}}), (Value{{"a", Value::list({1, "b"})}}));
  EXPECT_NE((Value{{"a", Value::list({1, "b"})}}), (Value{{"a", Value::list({1, "c"})}}));
  EXPECT_NE((Value{{"a", 1}}), (Value{{"b", 1}}));
  EXPECT_NE(Value::list({1}), Value::list({1, 2}));
}

TEST(ValueTest, IsNullOnceMovedFromAndMayBeMovedOutOfItself) {
  Value from = Value::list({"a"});
  Value to = std::move(from);
  EXPECT_TRUE(from.isNull());
  EXPECT_EQ(to, Value::list({"a"}));

  Value outer{{"inner", "kept"}};
  outer = outer["inner"];
  EXPECT_EQ(outer, "kept");
}

TEST(ValueTest, NestingOfAnyDepthIsCopiedComparedWrittenReadAndDestroyed) {
  constexpr int DEPTH = 100'000;
  for (const bool inMaps : {true, false}) {
    const Value value = nested(DEPTH, inMaps);
    const Value copy = value;
    EXPECT_TRUE(copy == value);
    EXPECT_FALSE(value == nested(DEPTH - 1, inMaps));
    const std::string json = jsonFromValue(value);
    EXPECT_EQ(json.size(), std::string(R"("innermost")").size() + DEPTH * (inMaps ? 6u : 2u));
    const auto read = valueFromJson(json);
    ASSERT_TRUE(read);
    EXPECT_TRUE(*read == value);
    EXPECT_FALSE(valueFromJson(std::string_view(json).substr(0, json.size() / 2)));
  }
}

/// The JSON library's own output is the reference for what goes over the wire.
TEST(ValueTest, ReadsAndWritesAsTheJsonLibraryDoes) {
  for (const char* text : {"null",
                           "true",
                           "-1",
                           "9223372036854775807",
                           "9223372036854775808",
                           "18446744073709551615",
                           "-9223372036854775808",
                           "0.1",
                           "1e300",
                           "-0.0",
                           "5e-324",
                           "123456789.123",
                           "18446744073709551616",
                           R"("")",
                           R"("quote \" backslash \\ newline \n bell \u0007 del \u007f")",
                           R"("ğüşıöç 漢字 😀")",
                           "[]",
                           "[[],{},[null,1]]",
                           R"({"b":1,"a":{"c":[1,2,{}]},"ı":"ş"})",
                           R"({"a":1,"a":{"second":true}})"}) {
    const auto value = valueFromJson(text);
    ASSERT_TRUE(value) << text;
    EXPECT_EQ(jsonFromValue(*value), nlohmann::json::parse(text).dump());
  }
  for (const char* text : {"", "{", "[1,]", "nul", "1 2", "{\"a\"}", "\"\xff\"", "NaN"}) {
    EXPECT_FALSE(valueFromJson(text)) << text;
  }
}

TEST(ValueTest, WritesWhatJsonCannotHoldAsItsReplacement) {
  EXPECT_EQ(jsonFromValue(Value::list({NAN, std::numeric_limits<double>::infinity()})),
            "[null,null]");
  EXPECT_EQ(jsonFromValue(Value{{"k\xff", "a\xc3"}}), "{\"k\uFFFD\":\"a\uFFFD\"}");
}

}  // namespace
}  // namespace kifo
