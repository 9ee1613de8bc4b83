#include <gtest/gtest.h>

#include <vector>

#include "async/promise.h"
#include "promise_test_support.h"
#include "runtime/gc.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {
namespace {

using testing::Deferred;

class PromiseCombinatorsTest : public testing::PromiseFixture {
protected:
    Deferred a, b, c;
    std::vector<Promise> inputs{a.promise, b.promise, c.promise};
};

TEST_F(PromiseCombinatorsTest, AllKeepsInputOrderAndFailsOnTheFirstRejection) {
    Promise all = promise_all(inputs);
    c.resolve("c");
    a.resolve("a");
    EXPECT_TRUE(all.is_pending());
    b.resolve("b");
    EXPECT_EQ(to_string(all.value()), R"([ "a","b","c" ])");

    Deferred x, y;
    Promise failed = promise_all({x.promise, y.promise});
    y.reject("y failed");
    EXPECT_TRUE(failed.is_rejected());
    EXPECT_EQ(failed.reason(), Value("y failed"));
    x.reject("x failed too");
    EXPECT_EQ(failed.reason(), Value("y failed"));
}

TEST_F(PromiseCombinatorsTest, AnyTakesTheFirstValueOrAllReasons) {
    Promise any = promise_any(inputs);
    a.reject("no a");
    b.resolve("b");
    c.resolve("c");
    EXPECT_EQ(any.value(), Value("b"));

    Deferred x, y;
    Promise none = promise_any({x.promise, y.promise});
    y.reject("no y");
    EXPECT_TRUE(none.is_pending());
    x.reject("no x");
    EXPECT_EQ(to_string(none.reason()), R"([ "no x","no y" ])");
}

TEST_F(PromiseCombinatorsTest, RaceSettlesAsTheFirstSettles) {
    Promise race = promise_race(inputs);
    b.reject("b lost");
    a.resolve("a");
    EXPECT_TRUE(race.is_rejected());
    EXPECT_EQ(race.reason(), Value("b lost"));

    Deferred x, y;
    Promise won = promise_race({x.promise, y.promise});
    y.resolve("y");
    EXPECT_EQ(won.value(), Value("y"));
}

TEST_F(PromiseCombinatorsTest, AllSettledRecordsEveryOutcomeInInputOrder) {
    Promise settled = promise_all_settled(inputs);
    c.resolve(3);
    a.reject("no a");
    EXPECT_TRUE(settled.is_pending());
    b.resolve(2);
    EXPECT_EQ(to_string(settled.value()),
              R"([ { status : "rejected", reason : "no a" },)"
              R"({ status : "fulfilled", value : 2 },{ status : "fulfilled", value : 3 } ])");
    // Its inputs count as handled.
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseCombinatorsTest, EmptyInputs) {
    Promise all = promise_all({});
    EXPECT_TRUE(all.is_fulfilled());
    EXPECT_EQ(all.value().size(), 0u);
    Promise settled = promise_all_settled({});
    EXPECT_TRUE(settled.is_fulfilled());
    EXPECT_EQ(settled.value().size(), 0u);
    Promise any = promise_any({});
    EXPECT_TRUE(any.is_rejected());
    EXPECT_EQ(any.reason().size(), 0u);
    Promise race = promise_race({});
    runtime.run_frame();
    EXPECT_TRUE(race.is_pending());
}

TEST_F(PromiseCombinatorsTest, AlreadySettledInputsSettleTheCombinationAtOnce) {
    Promise all = promise_all({promise_resolve(1), promise_resolve(2)});
    EXPECT_EQ(to_string(all.value()), "[ 1,2 ]");
    Promise race = promise_race({promise_resolve("first"), promise_resolve("second")});
    EXPECT_EQ(race.value(), Value("first"));
}

}  // namespace
}  // namespace veldra
