#include "trials/ticker.h"

#include <iterator>
#include <utility>

#include "runtime/assertion.h"
#include "runtime/runtime.h"

namespace veldra {

void Ticker::initialize(double seed) {
    rng_.emplace(seed);
}

void Ticker::on_tick(InstanceId instance, Callback callback) {
    handlers_.push_back({instance, std::move(callback)});
}

Rng& Ticker::rng() {
    VELDRA_ASSERT(rng_, "Ticker used before initialize(seed)?");
    return *rng_;
}

void Ticker::tick(const Runtime& runtime) {
    VELDRA_ASSERT(!ticking_, "Ticker::tick called from inside a tick handler?");
    Rng& generator = rng();
    ticking_ = true;
    // The length is read again at every step: handlers appended meanwhile run this tick.
    for (std::size_t i = 0; i < handlers_.size(); ++i) {
        TickHandler& handler = handlers_[i];
        if (runtime.instance_exists(handler.instance)) {
            handler.callback(spent_ticks, generator);
        } else {
            // Nothing is running at this point, so erasing moves no running callback.
            handlers_.erase(handlers_.begin() + static_cast<std::ptrdiff_t>(i));
            --i;
        }
    }
    ticking_ = false;
    dropped_.clear();
    ++spent_ticks;
}

void Ticker::drop_handlers() {
    if (!ticking_) {
        handlers_.clear();
    } else if (dropped_.empty()) {
        // Moving a whole deque hands over its blocks: the running handler stays where it is.
        dropped_ = std::move(handlers_);
        handlers_.clear();
    } else {
        // Dropped twice in one walk: the running handler is already in dropped_, and appending
        // to a deque moves nothing that is there.
        for (TickHandler& handler : handlers_)
            dropped_.push_back(std::move(handler));
        handlers_.clear();
    }
}

void Ticker::reset() {
    drop_handlers();
}
void Ticker::free() {
    drop_handlers();
}

}  // namespace veldra
