#include "server/rate_limiter.h"

#include <algorithm>

namespace veldra {

namespace {

// Past this many addresses the buckets that have refilled are dropped: a full bucket is the same
// as none, so memory stays bounded without changing any answer.
constexpr std::size_t ADDRESSES_BEFORE_FORGETTING = 10000;

}  // namespace

RateLimiter::RateLimiter(double per_second, double burst)
    : per_second_(per_second), burst_(std::max(burst, 1.0)) {}

bool RateLimiter::allow(const std::string& address, Clock::time_point now) {
    if (per_second_ <= 0)
        return true;
    std::lock_guard lock(mutex_);
    if (buckets_.size() >= ADDRESSES_BEFORE_FORGETTING)
        forget_full_buckets(now);
    auto [it, is_new] = buckets_.try_emplace(address, Bucket{.requests = burst_, .updated = now});
    Bucket& bucket = it->second;
    if (!is_new && now > bucket.updated) {
        const std::chrono::duration<double> elapsed = now - bucket.updated;
        bucket.requests = std::min(burst_, bucket.requests + elapsed.count() * per_second_);
        bucket.updated = now;
    }
    if (bucket.requests < 1)
        return false;
    bucket.requests -= 1;
    return true;
}

std::size_t RateLimiter::tracked_addresses() const {
    std::lock_guard lock(mutex_);
    return buckets_.size();
}

void RateLimiter::forget_full_buckets(Clock::time_point now) {
    std::erase_if(buckets_, [&](const auto& entry) {
        const std::chrono::duration<double> elapsed = now - entry.second.updated;
        return entry.second.requests + elapsed.count() * per_second_ >= burst_;
    });
}

}  // namespace veldra
