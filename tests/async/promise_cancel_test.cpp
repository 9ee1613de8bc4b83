#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "async/promise.h"
#include "promise_test_support.h"

namespace veldra {
namespace {

using testing::Deferred;
using PromiseCancelTest = testing::PromiseFixture;

TEST_F(PromiseCancelTest, CancellationPassesDownToTheFirstCancelHandlerWhichRecovers) {
    Deferred<int> asked;
    std::vector<std::string> ran;
    Promise<int> recovered = asked.promise
                                 .and_then([&](int v) {
                                     ran.push_back("then");
                                     return v;
                                 })
                                 .and_catch([&](const Value&) {
                                     ran.push_back("catch");
                                     return 0;
                                 })
                                 .and_cancelled([&] {
                                     ran.push_back("cancelled");
                                     return 5;
                                 });
    Promise<int> after = recovered.and_then([](int v) { return v + 1; });
    asked.cancel();
    EXPECT_EQ(ran, std::vector<std::string>{"cancelled"});
    EXPECT_TRUE(asked.promise.is_cancelled());
    EXPECT_TRUE(recovered.is_fulfilled());
    EXPECT_EQ(after.value(), 6);
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseCancelTest, CancelHandlersSkipOtherOutcomesAndOnlyLookingOnesEndTheValue) {
    Deferred<std::string> fulfilled;
    bool cancel_ran = false;
    Promise<void> looked = fulfilled.promise.and_cancelled([&] { cancel_ran = true; });
    fulfilled.resolve("answer");
    EXPECT_FALSE(cancel_ran);
    EXPECT_TRUE(looked.is_fulfilled());

    Deferred<std::string> rejected;
    Promise<std::string> passed = rejected.promise.and_cancelled([&] {
        cancel_ran = true;
        return std::string("never");
    });
    Value caught;
    passed.and_catch([&](const Value& reason) { caught = reason; });
    rejected.reject("failed");
    EXPECT_FALSE(cancel_ran);
    EXPECT_EQ(caught, Value("failed"));
}

TEST_F(PromiseCancelTest, UnhandledCancellationIsNeverReportedAsUncaught) {
    Promise<void> at_once(
        [](const Resolve<void>&, const Reject&, const Cancel& cancel) { cancel(); });
    EXPECT_TRUE(at_once.is_cancelled());
    Promise<void> chained_on_cancelled = at_once.and_then([] {});
    EXPECT_TRUE(chained_on_cancelled.is_cancelled());

    Deferred<int> later;
    Promise<int> end = later.promise.and_then([](int v) { return v * 2; });
    later.cancel();
    EXPECT_TRUE(end.is_cancelled());

    step_event_loop();
    EXPECT_TRUE(uncaught.empty());

    // A rejection beside them still is.
    Deferred<int> failing;
    failing.reject("still reported");
    EXPECT_EQ(uncaught, std::vector<Value>{Value("still reported")});
}

TEST_F(PromiseCancelTest, AHandlerReturningACancelledPromiseCancelsTheChain) {
    bool later_ran = false;
    Promise<int> chain = promise_resolve(std::string("question"))
                             .and_then([](const std::string&) { return promise_cancelled<int>(); })
                             .and_then([&](int v) {
                                 later_ran = true;
                                 return v;
                             });
    EXPECT_TRUE(chain.is_cancelled());
    EXPECT_FALSE(later_ran);

    Deferred<int> inner;
    Promise<int> followed = promise_resolve().and_then([&] { return inner.promise; });
    EXPECT_TRUE(followed.is_pending());
    inner.cancel();
    EXPECT_TRUE(followed.is_cancelled());
    step_event_loop();
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseCancelTest, AThrowingCancelHandlerRejects) {
    Value caught;
    promise_cancelled<int>()
        .and_cancelled([]() -> int { throw std::runtime_error("cleanup failed"); })
        .and_catch([&](const Value& reason) { caught = reason; });
    EXPECT_EQ(caught, Value("cleanup failed"));
    step_event_loop();
    EXPECT_TRUE(uncaught.empty());
}

}  // namespace
}  // namespace veldra
