#include "serial/json.h"

#include <gtest/gtest.h>

#include <cmath>

#include "runtime/gc.h"
#include "runtime/log.h"

namespace veldra {
namespace {

class JsonTest : public ::testing::Test {
protected:
    GcScope collector;
    LogCapture log;
};

TEST_F(JsonTest, ParsedObjectsKeepFieldOrderAndKinds) {
    auto value = json_parse(R"({"z": 1, "a": [true, null, "s", 2.5], "m": {"k": -3}})");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->field_names(), (std::vector<std::string>{"z", "a", "m"}));
    const Value list = value->get("a");
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list.at(0), Value(true));
    EXPECT_TRUE(list.at(1).is_undefined());
    EXPECT_EQ(list.at(2), Value("s"));
    EXPECT_EQ(list.at(3), Value(2.5));
    EXPECT_EQ(value->get("m").get("k"), Value(-3));
}

TEST_F(JsonTest, RoundTripKeepsTextIdentical) {
    const std::string text =
        R"({"seed":4294967296,"ratio":0.1,"name":"A \"q\"\n","tags":[],"nested":{"b":false,"n":null}})";
    auto value = json_parse(text);
    ASSERT_TRUE(value);
    EXPECT_EQ(json_stringify(*value, false), text);
}

TEST_F(JsonTest, NumbersAreWrittenAsIntegersOnlyWhenWholeAndExact) {
    EXPECT_EQ(json_stringify(3.0, false), "3");
    EXPECT_EQ(json_stringify(-0.0, false), "0");
    EXPECT_EQ(json_stringify(0.5, false), "0.5");
    EXPECT_EQ(json_stringify(1e300, false), "1e+300");
    EXPECT_EQ(json_stringify(std::nan(""), false), "null");
    EXPECT_EQ(json_stringify(Value::instance(NO_INSTANCE), false), "-4");
    EXPECT_EQ(json_stringify(Value::unset(), false), "null");
}

TEST_F(JsonTest, PrettyOutputIsIndented) {
    Value s = Value::make_struct();
    s.set("a", Value::array({1}));
    EXPECT_EQ(json_stringify(s, true), "{\n    \"a\": [\n        1\n    ]\n}");
}

TEST_F(JsonTest, MalformedOrTooDeepTextGivesNothingAndDoesNotThrow) {
    for (const char* text : {"", "{", "{\"a\":}", "[1,]", "{'a':1}", "nul", "1 2", "\"\\x\""})
        EXPECT_FALSE(json_parse(text)) << text;
    EXPECT_FALSE(json_parse(std::string(600, '[') + std::string(600, ']')));
    EXPECT_TRUE(json_parse(std::string(MAX_JSON_DEPTH, '[') + std::string(MAX_JSON_DEPTH, ']')));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(JsonTest, ErrorsNameTheLineAndColumn) {
    EXPECT_EQ(json_parse_document("{\n  \"a\": 1,\n  \"b\": }\n").error,
              "line 3, column 8: syntax error while parsing value - unexpected '}'; expected "
              "'[', '{', or a literal");
    EXPECT_EQ(json_parse_document("").error.substr(0, 17), "line 1, column 1:");
    // Too deep is refused at the bracket that goes too far, before anything is built; brackets
    // inside strings, escaped quotes included, do not count.
    const std::string deep = "[\"\\\"[[[\",\n" + std::string(MAX_JSON_DEPTH, '[');
    EXPECT_EQ(json_parse_document(deep).error, "line 2, column " + std::to_string(MAX_JSON_DEPTH) +
                                                   ": nested deeper than " +
                                                   std::to_string(MAX_JSON_DEPTH) + " levels");
    EXPECT_EQ(json_parse_document("{\"a\": 1e999}").error, "number overflow parsing '1e999'");
    EXPECT_EQ(json_parse_document("[-1e999]").error, "number overflow parsing '-1e999'");
    const JsonDocument fine = json_parse_document(" {\"k\": [1, \"]]\"]} ");
    ASSERT_TRUE(fine) << fine.error;
    EXPECT_EQ(fine.json["k"][1], "]]");
}

TEST_F(JsonTest, MethodsAreRefusedWithTheGameText) {
    Value s = Value::make_struct();
    s.set("ok", 1);
    s.set("run", Value::method([](const Value&, std::span<const Value>) { return Value(); }));
    EXPECT_TRUE(value_to_json(s).is_discarded());
    EXPECT_EQ(json_stringify(s, false), "");
    ASSERT_EQ(log.lines.size(), 2u);
    EXPECT_EQ(log.lines[0].level, LogLevel::error);
    EXPECT_EQ(log.lines[0].message, "Functions/methods cannot be serialised");
}

TEST_F(JsonTest, SelfReferenceIsRefusedButSharingIsNot) {
    Value shared = Value::make_struct();
    shared.set("x", 1);
    Value twice = Value::array({shared, shared});
    EXPECT_EQ(json_stringify(twice, false), R"([{"x":1},{"x":1}])");
    shared.set("me", shared);
    EXPECT_EQ(json_stringify(twice, false), "");
    EXPECT_TRUE(log.contains("refers to itself"));
    shared.remove("me");
}

TEST_F(JsonTest, InvalidUtf8IsReplacedNotThrown) {
    EXPECT_EQ(json_stringify(Value(std::string("a\xff")), false), "\"a\xEF\xBF\xBD\"");
}

}  // namespace
}  // namespace veldra
