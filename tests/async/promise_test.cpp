#include "async/promise.h"

#include <gtest/gtest.h>

#include <any>
#include <stdexcept>
#include <string>
#include <vector>

#include "async/promise_event_loop.h"
#include "promise_test_support.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"

namespace veldra {
namespace {

using testing::Deferred;
using PromiseTest = testing::PromiseFixture;

TEST_F(PromiseTest, SettlesOnceAndIgnoresLaterResolveAndReject) {
    Deferred<int> d;
    EXPECT_TRUE(d.promise.is_pending());
    EXPECT_THROW(d.promise.value(), std::bad_any_cast);
    d.resolve(1);
    d.reject("late");
    d.cancel();
    d.resolve(2);
    EXPECT_TRUE(d.promise.is_fulfilled());
    EXPECT_EQ(d.promise.value(), 1);
    EXPECT_TRUE(d.promise.reason().is_undefined());

    Deferred<int> r;
    r.reject("first");
    r.resolve(3);
    r.cancel();
    EXPECT_TRUE(r.promise.is_rejected());
    EXPECT_EQ(r.promise.reason(), Value("first"));
    EXPECT_THROW(r.promise.value(), std::bad_any_cast);

    Deferred<int> c;
    c.cancel();
    c.resolve(4);
    c.reject("too late");
    EXPECT_TRUE(c.promise.is_cancelled());
    EXPECT_TRUE(c.promise.reason().is_undefined());
}

TEST_F(PromiseTest, HandlersOnAPendingPromiseRunAtSettlementInTheOrderAdded) {
    Deferred<> d;
    std::vector<std::string> order;
    d.promise.and_then([&](const Value& v) { order.push_back("a" + v.as_string()); });
    d.promise.and_then([&](const Value& v) { order.push_back("b" + v.as_string()); });
    EXPECT_TRUE(order.empty());
    d.resolve(Value("!"));
    EXPECT_EQ(order, (std::vector<std::string>{"a!", "b!"}));
}

TEST_F(PromiseTest, HandlerOnASettledPromiseRunsInsideAndThen) {
    bool ran = false;
    Promise<double> next = promise_resolve(5).and_then([&](int v) {
        ran = true;
        return v * 2.5;
    });
    EXPECT_TRUE(ran);
    EXPECT_TRUE(next.is_fulfilled());
    EXPECT_EQ(next.value(), 12.5);
}

TEST_F(PromiseTest, HandlerReturningAPromiseHoldsTheChainUntilThatOneSettles) {
    Deferred<std::string> inner;
    std::vector<std::string> order;
    Promise<void> last = promise_resolve()
                             .and_then([&] {
                                 order.push_back("a");
                                 return inner.promise;
                             })
                             .and_then([&](const std::string& v) { order.push_back("b" + v); });
    EXPECT_EQ(order, std::vector<std::string>{"a"});
    EXPECT_TRUE(last.is_pending());
    inner.resolve("x");
    EXPECT_EQ(order, (std::vector<std::string>{"a", "bx"}));
    EXPECT_TRUE(last.is_fulfilled());

    Deferred<> failing;
    Promise<Value> followed = promise_resolve().and_then([&] { return failing.promise; });
    Value caught;
    followed.and_catch([&](const Value& reason) { caught = reason; });
    failing.reject("no");
    EXPECT_EQ(caught, Value("no"));
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseTest, RejectionSkipsFulfilHandlersUntilACatchWhichRecovers) {
    Deferred<int> d;
    bool skipped_ran = false;
    Value caught;
    Promise<int> recovered = d.promise
                                 .and_then([&](int v) {
                                     skipped_ran = true;
                                     return v;
                                 })
                                 .and_catch([&](const Value& reason) {
                                     caught = reason;
                                     return 7;
                                 });
    Promise<int> after = recovered.and_then([](int v) { return v + 1; });
    d.reject("broken");
    EXPECT_FALSE(skipped_ran);
    EXPECT_EQ(caught, Value("broken"));
    EXPECT_TRUE(recovered.is_fulfilled());
    EXPECT_EQ(after.value(), 8);
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseTest, ThrownExceptionsBecomeRejectionsWithTheirText) {
    Promise<int> thrown_in_executor(
        [](const Resolve<int>&, const Reject&) { throw std::runtime_error("executor failed"); });
    EXPECT_TRUE(thrown_in_executor.is_rejected());
    EXPECT_EQ(thrown_in_executor.reason(), Value("executor failed"));

    Deferred<> d;
    Promise<Value> thrown_in_handler = d.promise.and_then(
        [](const Value&) -> Value { throw std::invalid_argument("handler failed"); });
    d.resolve(Value());
    EXPECT_TRUE(thrown_in_handler.is_rejected());
    EXPECT_EQ(thrown_in_handler.reason(), Value("handler failed"));
}

TEST_F(PromiseTest, AndFinallyFailsWithNotImplementedYet) {
    Promise<void> result = promise_resolve(1).and_finally([] {});
    EXPECT_TRUE(result.is_rejected());
    EXPECT_EQ(result.reason(), Value("Not implemented yet."));
    EXPECT_EQ(uncaught, std::vector<Value>{Value("Not implemented yet.")});
}

TEST_F(PromiseTest, DelayedExecutionRunsExecutorsAtTheEventLoopsNextStep) {
    promises_enable_delayed_execution(true);
    std::vector<std::string> order;
    Promise<int> outer([&](const Resolve<int>& resolve, const Reject&) {
        order.push_back("outer");
        // Queued while the loop runs: still executed in the same step.
        Promise<void>([&](const Resolve<void>&, const Reject&) { order.push_back("inner"); });
        resolve(1);
    });
    Promise<void> rejected = promise_reject("handled in time");
    rejected.and_catch([] {});
    EXPECT_TRUE(order.empty());
    EXPECT_TRUE(outer.is_pending());
    step_event_loop();
    EXPECT_EQ(order, (std::vector<std::string>{"outer", "inner"}));
    EXPECT_TRUE(outer.is_fulfilled());
    EXPECT_TRUE(rejected.is_rejected());
    EXPECT_TRUE(uncaught.empty());

    promise_reject("nobody listens");
    step_event_loop();
    EXPECT_EQ(uncaught, std::vector<Value>{Value("nobody listens")});
}

TEST_F(PromiseTest, UncaughtHandlerSeesEachUnhandledRejectionOnce) {
    Promise<void> immediate([](const Resolve<void>&, const Reject& reject) { reject("at once"); });
    EXPECT_EQ(uncaught, std::vector<Value>{Value("at once")});

    Deferred<> handled;
    handled.promise.and_catch([] {});
    handled.reject("caught");

    Deferred<> unhandled;
    unhandled.reject("later");

    // Only the end of the chain is unhandled.
    Deferred<> chained;
    chained.promise.and_then([] {});
    chained.reject("down the chain");

    // Chaining on a rejection already reported passes it on without a second report.
    Promise<void> passed_on = immediate.and_then([] {});
    EXPECT_EQ(passed_on.reason(), Value("at once"));

    step_event_loop();
    EXPECT_EQ(uncaught, (std::vector<Value>{"at once", "later", "down the chain"}));
    EXPECT_EQ(handled.promise.reason(), Value("caught"));
}

TEST_F(PromiseTest, FailureWhileChainingOnASettledPromiseIsJudgedAtTheNextStep) {
    auto fail = []() -> Value { throw std::runtime_error("sync failure"); };
    Value caught;
    promise_resolve().and_then(fail).and_catch([&](const Value& r) { caught = r; });
    Promise<Value> left_alone = promise_resolve().and_then(fail);
    EXPECT_EQ(caught, Value("sync failure"));
    EXPECT_TRUE(left_alone.is_rejected());
    EXPECT_TRUE(uncaught.empty());
    step_event_loop();
    EXPECT_EQ(uncaught, std::vector<Value>{Value("sync failure")});
}

TEST_F(PromiseTest, DebugKeepsTheConstructionCallStack) {
    Promise<void> plain = promise_resolve();
    EXPECT_TRUE(plain.debug_callstack().empty());
    promises_enable_debug(true);
    Promise<void> kept([](const Resolve<void>&, const Reject&) {});
    ASSERT_FALSE(kept.debug_callstack().empty());
    EXPECT_NE(kept.debug_callstack().front().find("promise_test.cpp"), std::string::npos);
}

TEST_F(PromiseTest, UncaughtRejectionTextIsExact) {
    LogCapture capture;
    Deferred<> d;
    d.reject("Request failed.");
    log_uncaught_rejection(d.promise);
    ASSERT_EQ(capture.lines.size(), 1u);
    EXPECT_EQ(capture.lines[0].level, LogLevel::error);
    EXPECT_EQ(capture.lines[0].message,
              "A promise was rejected but not caught:\n[#ff5555]|[/c]\n[#ff5555]| [/c]\"Request "
              "failed.\"\n[#ff5555]|[/c]\n[#ff5555]| [/c]At:\n[#ff5555]|__________[/c]");

    promises_enable_debug(true);
    Deferred<> with_stack;
    with_stack.reject(12.5);
    log_uncaught_rejection(with_stack.promise);
    std::string expected =
        "A promise was rejected but not caught:\n[#ff5555]|[/c]\n[#ff5555]| [/c]\"12.5\"\n"
        "[#ff5555]|[/c]\n[#ff5555]| [/c]At:";
    for (const std::string& entry : with_stack.promise.debug_callstack())
        expected += "\n[#ff5555]| [/c]" + entry;
    expected += "\n[#ff5555]|__________[/c]";
    ASSERT_EQ(capture.lines.size(), 2u);
    EXPECT_EQ(capture.lines[1].message, expected);
}

}  // namespace
}  // namespace veldra
