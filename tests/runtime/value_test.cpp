#include "runtime/value.h"

#include <gtest/gtest.h>

#include <cmath>

#include "runtime/gc.h"

namespace veldra {
namespace {

class ValueTest : public ::testing::Test {
protected:
    GcScope collector;
};

TEST_F(ValueTest, KindsAndTypeNames) {
    struct Case {
        Value value;
        ValueKind kind;
        const char* type;
    };
    const Case cases[] = {
        {Value(), ValueKind::undefined, "undefined"},
        {Value::unset(), ValueKind::unset, "undefined"},
        {Value(1.5), ValueKind::number, "number"},
        {Value(7), ValueKind::number, "number"},
        {Value(std::size_t{3}), ValueKind::number, "number"},
        {Value(true), ValueKind::boolean, "bool"},
        {Value("text"), ValueKind::string, "string"},
        {Value(std::string_view("view")), ValueKind::string, "string"},
        {Value::array(), ValueKind::array, "array"},
        {Value::make_struct(), ValueKind::structure, "struct"},
        {Value::method([](const Value&, std::span<const Value>) { return Value(); }),
         ValueKind::method, "method"},
        {Value::instance(NO_INSTANCE), ValueKind::instance, "number"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.value.kind(), c.kind) << c.type;
        EXPECT_EQ(type_name(c.value), c.type);
    }
    EXPECT_EQ(sizeof(Value), 16u);
}

TEST_F(ValueTest, UnsetCountsAsUndefinedButStaysDistinguishable) {
    EXPECT_TRUE(Value::unset().is_undefined());
    EXPECT_TRUE(Value::unset().is_unset());
    EXPECT_FALSE(Value().is_unset());
    EXPECT_EQ(Value::unset(), Value());
}

TEST_F(ValueTest, NumericAccessorsAcceptInstancesAndBools) {
    EXPECT_EQ(Value::instance(NO_INSTANCE).as_number(), -4.0);
    EXPECT_EQ(Value::instance(100005).as_instance(), 100005);
    EXPECT_EQ(Value(true).as_number(), 1.0);
    EXPECT_EQ(Value(std::int64_t{1} << 40).as_number(), std::ldexp(1.0, 40));
}

TEST_F(ValueTest, Equality) {
    EXPECT_EQ(Value(2), Value(2.0));
    EXPECT_EQ(Value::instance(-4), Value(-4));
    EXPECT_NE(Value::instance(3), Value::instance(4));
    EXPECT_EQ(Value(std::string("ab")), Value("ab"));
    EXPECT_NE(Value("1"), Value(1));
    EXPECT_NE(Value(true), Value(1));
    EXPECT_NE(Value(std::nan("")), Value(std::nan("")));
    Value a = Value::array({1, 2});
    EXPECT_NE(a, Value::array({1, 2}));  // by identity, not content
    Value same = a;
    EXPECT_EQ(a, same);
    EXPECT_NE(Value::make_struct(), Value::make_struct());
}

TEST_F(ValueTest, StringCopiesShareTheTextAndNeverSeeReassignment) {
    Value a("shared");
    Value b = a;
    EXPECT_EQ(a.identity(), b.identity());
    a = "changed";
    EXPECT_EQ(b.as_string(), "shared");
    EXPECT_EQ(a.as_string(), "changed");
}

TEST_F(ValueTest, ArrayCopyIsIsolatedFromLaterMutationsOfEitherSide) {
    Value a = Value::array({1, 2});
    Value b = a;
    b.push(3);
    a.set_at(0, "first");
    EXPECT_EQ(a.size(), 2u);
    EXPECT_EQ(b.size(), 3u);
    EXPECT_EQ(a.at(0), Value("first"));
    EXPECT_EQ(b.at(0), Value(1));
    EXPECT_NE(a.identity(), b.identity());
}

TEST_F(ValueTest, UnsharedArrayIsMutatedInPlace) {
    Value a = Value::array({1});
    const void* before = a.identity();
    a.push(2);
    a.set_at(0, 5);
    EXPECT_EQ(a.identity(), before);
}

TEST_F(ValueTest, NestedArraysAreCopiedOnWriteAtEveryLevel) {
    Value grid = Value::array({Value::array({0, 0}), Value::array({0, 0})});
    Value snapshot = grid;
    Value row = grid.at(1);
    row.set_at(1, 9);
    grid.set_at(1, row);
    EXPECT_EQ(grid.at(1).at(1), Value(9));
    EXPECT_EQ(snapshot.at(1).at(1), Value(0));
}

TEST_F(ValueTest, ArrayGrowthShrinkAndErase) {
    Value a = Value::array();
    a.set_at(3, "x");
    ASSERT_EQ(a.size(), 4u);
    EXPECT_EQ(a.at(1), Value(0));  // gaps hold 0
    a.resize(6);
    EXPECT_EQ(a.at(5), Value(0));
    a.erase_at(0);
    EXPECT_EQ(a.at(2), Value("x"));
    a.resize(1);
    EXPECT_EQ(a.size(), 1u);
}

TEST_F(ValueTest, ArraySelfInsertionMakesACopyNotACycle) {
    Value a = Value::array({1});
    a.push(a);
    ASSERT_EQ(a.size(), 2u);
    EXPECT_EQ(a.at(1).size(), 1u);
}

TEST_F(ValueTest, AssigningAnElementOverItsOnlyHolderIsSafe) {
    Value a = Value::array({Value::array({"inner"})});
    a = a.at(0);
    EXPECT_EQ(a.at(0), Value("inner"));
    Value s = Value::make_struct();
    s.set("child", Value::make_struct());
    s.get("child").set("name", "c");
    s = s.get("child");
    EXPECT_EQ(s.get("name"), Value("c"));
}

TEST_F(ValueTest, StructFieldsKeepFirstAssignmentOrder) {
    Value s = Value::make_struct();
    s.set("b", 1);
    s.set("a", 2);
    s.set("c", 3);
    s.set("b", 4);  // reassignment keeps the place
    EXPECT_EQ(s.field_names(), (std::vector<std::string>{"b", "a", "c"}));
    EXPECT_EQ(s.get("b"), Value(4));
    EXPECT_TRUE(s.remove("a"));
    EXPECT_FALSE(s.remove("a"));
    s.set("a", 5);
    EXPECT_EQ(s.field_names(), (std::vector<std::string>{"b", "c", "a"}));
}

TEST_F(ValueTest, StructAbsentFieldsReadAsUndefined) {
    Value s = Value::make_struct();
    EXPECT_TRUE(s.get("missing").is_undefined());
    EXPECT_FALSE(s.has("missing"));
    EXPECT_EQ(s.find("missing"), nullptr);
    EXPECT_TRUE(Value(3).get("x").is_undefined());
    EXPECT_TRUE(s.get("a").get("b").is_undefined());
}

TEST_F(ValueTest, StructCopiesAreReferencesToOneObject) {
    Value a = Value::make_struct();
    const Value b = a;
    b.set("x", 1);
    EXPECT_EQ(a.get("x"), Value(1));
    EXPECT_EQ(a, b);
}

TEST_F(ValueTest, MethodReceivesItsSelfAndArguments) {
    Value counter = Value::make_struct();
    counter.set("count", 0);
    Value add = Value::method(
        [](const Value& self, std::span<const Value> args) {
            const double step = args.empty() ? 1 : args[0].as_number();
            self.set("count", self.get("count").as_number() + step);
            return self.get("count");
        },
        counter);
    EXPECT_EQ(add.call(), Value(1));
    EXPECT_EQ(add.call({Value(5)}), Value(6));
    EXPECT_EQ(counter.get("count"), Value(6));
    EXPECT_EQ(add.method_self(), counter);
}

TEST_F(ValueTest, MethodSurvivesDroppingItsLastOtherReferenceWhileRunning) {
    Value holder = Value::make_struct();
    holder.set("m", Value::method(
                        [](const Value& self, std::span<const Value>) {
                            self.remove("m");
                            return Value("still here");
                        },
                        holder));
    // Called through the field itself, so the struct holds the only reference.
    const Value* method = holder.find("m");
    EXPECT_EQ(method->call(), Value("still here"));
    EXPECT_FALSE(holder.has("m"));
}

TEST_F(ValueTest, LongChainsAreFreedWithoutDeepRecursion) {
    Value head = Value::make_struct();
    Value tail = head;
    for (int i = 0; i < 300000; ++i) {
        Value next = Value::make_struct();
        tail.set("next", Value::array({next}));
        tail = next;
    }
    tail = Value();
    EXPECT_EQ(gc_object_count(), 300001u);
    head = Value();
    EXPECT_EQ(gc_object_count(), 0u);
}

TEST(ValueDeathTest, WrongKindAccessNamesTheMistake) {
    EXPECT_DEATH(Value("7").as_number(), "as_number\\(\\) on a value of type string");
    EXPECT_DEATH(Value::array({1}).at(1), "index out of bounds request 1 maximum size is 1");
    EXPECT_DEATH(Value(1).set("x", 2), "set\\(\\) on a value of type number");
    EXPECT_DEATH(Value().call(), "call\\(\\) on a value of type undefined");
}

}  // namespace
}  // namespace veldra
