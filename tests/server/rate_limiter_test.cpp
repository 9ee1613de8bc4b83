#include "server/rate_limiter.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

using std::chrono::milliseconds;
using Clock = RateLimiter::Clock;

int allowed_of(RateLimiter& limiter, const std::string& address, int tries, Clock::time_point at) {
    int allowed = 0;
    for (int i = 0; i < tries; ++i)
        allowed += limiter.allow(address, at) ? 1 : 0;
    return allowed;
}

TEST(RateLimiterTest, ABurstIsAllowedThenTheRateRefillsIt) {
    RateLimiter limiter(10, 20);
    const Clock::time_point start{};
    EXPECT_EQ(allowed_of(limiter, "10.0.0.1", 25, start), 20);
    EXPECT_EQ(allowed_of(limiter, "10.0.0.1", 5, start + milliseconds(250)), 2);
    EXPECT_EQ(allowed_of(limiter, "10.0.0.1", 50, start + milliseconds(10250)), 20);
}

TEST(RateLimiterTest, AddressesHaveBucketsOfTheirOwn) {
    RateLimiter limiter(1, 2);
    const Clock::time_point start{};
    EXPECT_EQ(allowed_of(limiter, "a", 5, start), 2);
    EXPECT_EQ(allowed_of(limiter, "b", 5, start), 2);
    EXPECT_FALSE(limiter.allow("a", start + milliseconds(500)));
    EXPECT_TRUE(limiter.allow("a", start + milliseconds(1000)));
}

TEST(RateLimiterTest, ClockGoingBackwardsGivesNothingExtra) {
    RateLimiter limiter(1, 1);
    const Clock::time_point start = Clock::time_point{} + milliseconds(5000);
    EXPECT_TRUE(limiter.allow("a", start));
    EXPECT_FALSE(limiter.allow("a", start - milliseconds(3000)));
}

TEST(RateLimiterTest, RateZeroAllowsEverything) {
    RateLimiter limiter(0, 0);
    EXPECT_EQ(allowed_of(limiter, "a", 1000, Clock::time_point{}), 1000);
    EXPECT_EQ(limiter.tracked_addresses(), 0u);
}

TEST(RateLimiterTest, RefilledBucketsAreForgottenOnceThereAreMany) {
    RateLimiter limiter(1, 1);
    const Clock::time_point start{};
    for (int i = 0; i < 10000; ++i)
        limiter.allow("idle" + std::to_string(i), start);
    EXPECT_EQ(limiter.tracked_addresses(), 10000u);
    // Much later every bucket is full again, so the next new address clears them.
    limiter.allow("new", start + milliseconds(5000));
    EXPECT_EQ(limiter.tracked_addresses(), 1u);
    // ... and an address that is still empty is kept, with its limit.
    for (int i = 0; i < 10000; ++i)
        limiter.allow("busy" + std::to_string(i), start + milliseconds(5000));
    EXPECT_FALSE(limiter.allow("new", start + milliseconds(5000)));
}

}  // namespace
}  // namespace veldra
