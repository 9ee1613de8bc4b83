#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "async/promise.h"
#include "promise_test_support.h"

namespace veldra {
namespace {

using testing::Deferred;
using PromiseTypedTest = testing::PromiseFixture;

struct Answer {
    std::string name;
    std::vector<int> scores;
};

TEST_F(PromiseTypedTest, ValuesChangeTypeAlongAChain) {
    Deferred<Answer> asked;
    Deferred<std::size_t> counted;
    std::optional<std::string> seen;
    Promise<std::string> text = asked.promise
                                    .and_then([&](const Answer& answer) {
                                        seen = answer.name;
                                        return counted.promise;
                                    })
                                    .and_then([](std::size_t n) { return n * 10; })
                                    .and_then([](std::size_t n) { return std::to_string(n); });
    asked.resolve(Answer{.name = "ada", .scores = {3, 4}});
    EXPECT_EQ(seen, "ada");
    EXPECT_TRUE(text.is_pending());
    counted.resolve(4);
    EXPECT_EQ(text.value(), "40");
    EXPECT_EQ(asked.promise.value().scores, (std::vector<int>{3, 4}));
}

TEST_F(PromiseTypedTest, AValueIsStoredOnceAndSharedByEveryHandle) {
    auto shared = std::make_shared<int>(1);
    Deferred<std::shared_ptr<int>> d;
    Promise<std::shared_ptr<int>> copy = d.promise;
    d.resolve(shared);
    EXPECT_EQ(copy.value(), shared);
    EXPECT_TRUE(copy == d.promise);
    // The handler sees the stored value, not a copy made for it.
    const std::shared_ptr<int>* handed = nullptr;
    copy.and_then([&](const std::shared_ptr<int>& p) { handed = &p; });
    EXPECT_EQ(handed, &copy.value());
}

TEST_F(PromiseTypedTest, BothHandlersOfAndThenLeaveWithTheSameType) {
    auto label = [](int v) { return "value " + std::to_string(v); };
    auto explain = [](const Value& reason) { return "failed: " + reason.as_string(); };
    Deferred<int> good, bad;
    Promise<std::string> from_good = good.promise.and_then(label, explain);
    Promise<std::string> from_bad = bad.promise.and_then(label, explain);
    good.resolve(3);
    bad.reject("no");
    EXPECT_EQ(from_good.value(), "value 3");
    EXPECT_EQ(from_bad.value(), "failed: no");
    EXPECT_TRUE(uncaught.empty());
}

TEST_F(PromiseTypedTest, AnyPromiseServesAsAPromiseOfNothing) {
    Deferred<Answer> d;
    Promise<void> done = d.promise;
    bool ran = false;
    done.and_then([&] { ran = true; });
    d.resolve(Answer{.name = "x", .scores = {}});
    EXPECT_TRUE(ran);
    EXPECT_TRUE(done.is_fulfilled());
}

TEST_F(PromiseTypedTest, ACatchThatOnlyLooksEndsTheValueButKeepsTheOutcome) {
    Deferred<int> d;
    Value caught;
    Promise<void> ended = d.promise.and_catch([&](const Value& reason) { caught = reason; });
    d.resolve(9);
    EXPECT_TRUE(ended.is_fulfilled());
    EXPECT_TRUE(caught.is_undefined());
}

}  // namespace
}  // namespace veldra
