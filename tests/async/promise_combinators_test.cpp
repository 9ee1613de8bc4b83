#include "async/promise_combinators.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "async/promise.h"
#include "promise_test_support.h"
#include "runtime/number_format.h"

namespace veldra {
namespace {

using testing::Deferred;

class PromiseCombinatorsTest : public testing::PromiseFixture {
protected:
    Deferred<std::string> a, b, c;
    std::vector<Promise<std::string>> inputs{a.promise, b.promise, c.promise};
};

using Strings = std::vector<std::string>;

TEST_F(PromiseCombinatorsTest, AllKeepsInputOrderAndFailsOnTheFirstRejection) {
    Promise<Strings> all = promise_all(inputs);
    c.resolve("c");
    a.resolve("a");
    EXPECT_TRUE(all.is_pending());
    b.resolve("b");
    EXPECT_EQ(all.value(), (Strings{"a", "b", "c"}));

    Deferred<int> x, y;
    Promise<std::vector<int>> failed = promise_all(std::vector{x.promise, y.promise});
    y.reject("y failed");
    EXPECT_TRUE(failed.is_rejected());
    EXPECT_EQ(failed.reason(), Value("y failed"));
    x.reject("x failed too");
    EXPECT_EQ(failed.reason(), Value("y failed"));
}

TEST_F(PromiseCombinatorsTest, AllOfPromisesOfNothingWaitsForEveryOne) {
    Deferred<void> x, y;
    Promise<void> both = promise_all(std::vector{x.promise, y.promise});
    x.resolve();
    EXPECT_TRUE(both.is_pending());
    y.resolve();
    EXPECT_TRUE(both.is_fulfilled());
}

TEST_F(PromiseCombinatorsTest, AnyTakesTheFirstValueOrAllReasons) {
    Promise<std::string> any = promise_any(inputs);
    a.reject("no a");
    b.resolve("b");
    c.resolve("c");
    EXPECT_EQ(any.value(), "b");

    Deferred<int> x, y;
    Promise<int> none = promise_any(std::vector{x.promise, y.promise});
    y.reject("no y");
    EXPECT_TRUE(none.is_pending());
    x.reject("no x");
    EXPECT_EQ(to_string(none.reason()), R"([ "no x","no y" ])");
}

TEST_F(PromiseCombinatorsTest, RaceSettlesAsTheFirstSettles) {
    Promise<std::string> race = promise_race(inputs);
    b.reject("b lost");
    a.resolve("a");
    EXPECT_TRUE(race.is_rejected());
    EXPECT_EQ(race.reason(), Value("b lost"));

    Deferred<int> x, y;
    Promise<int> won = promise_race(std::vector{x.promise, y.promise});
    y.resolve(2);
    EXPECT_EQ(won.value(), 2);
}

TEST_F(PromiseCombinatorsTest, AllSettledRecordsEveryOutcomeInInputOrder) {
    Promise<std::vector<SettledOutcome<std::string>>> settled = promise_all_settled(inputs);
    c.cancel();
    a.reject("no a");
    EXPECT_TRUE(settled.is_pending());
    b.resolve("b");
    const auto& outcomes = settled.value();
    ASSERT_EQ(outcomes.size(), 3u);
    EXPECT_EQ(outcomes[0].status, PromiseStatus::rejected);
    EXPECT_EQ(outcomes[0].reason, Value("no a"));
    EXPECT_FALSE(outcomes[0].value);
    EXPECT_EQ(outcomes[1].status, PromiseStatus::fulfilled);
    EXPECT_EQ(outcomes[1].value, "b");
    EXPECT_EQ(outcomes[2].status, PromiseStatus::cancelled);
    EXPECT_FALSE(outcomes[2].value);
    // Its inputs count as handled.
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseCombinatorsTest, ACancelledInputCancelsAllAndRaceButNotAnyWhileOthersMaySucceed) {
    Promise<Strings> all = promise_all(inputs);
    Promise<std::string> race = promise_race(inputs);
    Promise<std::string> any = promise_any(inputs);
    a.cancel();
    EXPECT_TRUE(all.is_cancelled());
    EXPECT_TRUE(race.is_cancelled());
    EXPECT_TRUE(any.is_pending());
    b.reject("no b");
    c.resolve("c");
    EXPECT_EQ(any.value(), "c");

    Deferred<int> x, y, z;
    Promise<int> all_cancelled = promise_any(std::vector{x.promise, y.promise});
    Promise<int> one_rejected = promise_any(std::vector{y.promise, z.promise});
    x.cancel();
    y.cancel();
    EXPECT_TRUE(all_cancelled.is_cancelled());
    z.reject("no z");
    // The reasons of the rejected inputs only: a cancellation has none.
    EXPECT_EQ(to_string(one_rejected.reason()), R"([ "no z" ])");
    // Nobody caught that one; the cancelled one is not reported.
    ASSERT_EQ(uncaught.size(), 1u);
    EXPECT_EQ(to_string(uncaught[0]), R"([ "no z" ])");
}

TEST_F(PromiseCombinatorsTest, EmptyInputs) {
    Promise<std::vector<int>> all = promise_all(std::vector<Promise<int>>{});
    EXPECT_TRUE(all.is_fulfilled());
    EXPECT_TRUE(all.value().empty());
    auto settled = promise_all_settled(std::vector<Promise<int>>{});
    EXPECT_TRUE(settled.is_fulfilled());
    EXPECT_TRUE(settled.value().empty());
    Promise<int> any = promise_any(std::vector<Promise<int>>{});
    EXPECT_TRUE(any.is_rejected());
    EXPECT_EQ(any.reason().size(), 0u);
    Promise<int> race = promise_race(std::vector<Promise<int>>{});
    runtime.run_frame();
    EXPECT_TRUE(race.is_pending());
}

TEST_F(PromiseCombinatorsTest, AlreadySettledInputsSettleTheCombinationAtOnce) {
    Promise<std::vector<int>> all =
        promise_all(std::vector{promise_resolve(1), promise_resolve(2)});
    EXPECT_EQ(all.value(), (std::vector<int>{1, 2}));
    Promise<std::string> race = promise_race(
        std::vector{promise_resolve(std::string("first")), promise_resolve(std::string("second"))});
    EXPECT_EQ(race.value(), "first");
}

}  // namespace
}  // namespace veldra
