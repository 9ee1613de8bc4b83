#pragma once
// Requests allowed per client address: a bucket per address that holds up to `burst` requests
// and refills at `per_second`, so a participant's game (a handful of requests per trial) is never
// held up while a client hammering the server, or guessing the password, is slowed to the rate.
// Time is passed in, so that tests need no clock.

#include <chrono>
#include <mutex>
#include <string>
#include <unordered_map>

namespace veldra {

class RateLimiter {
public:
    using Clock = std::chrono::steady_clock;

    // per_second <= 0 allows everything.
    RateLimiter(double per_second, double burst);

    // Takes one request from the address's bucket; false when it is empty. Thread-safe.
    bool allow(const std::string& address, Clock::time_point now);

    // Addresses with a bucket, for tests of the forgetting below.
    std::size_t tracked_addresses() const;

private:
    struct Bucket {
        double requests = 0;
        Clock::time_point updated;
    };
    void forget_full_buckets(Clock::time_point now);

    double per_second_;
    double burst_;
    mutable std::mutex mutex_;
    std::unordered_map<std::string, Bucket> buckets_;
};

}  // namespace veldra
