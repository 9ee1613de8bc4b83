#pragma once
// The fixed-step clock of a trial: counts ticks (60 per simulated second) and calls the tick
// handlers that entities register, in registration order. A trial may run thousands of ticks
// in one frame, so a tick allocates nothing.
//
// Order rules of tick():
// - Handlers run in registration order, each with (spent_ticks, rng): the first tick is 0.
// - A handler registered during a tick is appended and runs in that same tick.
// - A handler whose owner no longer exists is dropped when the walk reaches it, in the tick
//   after the owner went; the handler after it still runs in that tick.
// - reset() or free() called from a handler drops the rest of the walk.

#include <deque>
#include <functional>
#include <optional>

#include "runtime/instance_id.h"
#include "util/rng.h"
#include "util/ticks.h"

namespace veldra {

class Runtime;

class Ticker {
public:
    using Callback = std::function<void(Ticks tick, Rng& rng)>;

    // Gives the ticker its own generator; tick() needs it.
    void initialize(double seed);
    // The handler lives as long as `instance` exists.
    void on_tick(InstanceId instance, Callback callback);
    // Runs every handler whose instance still exists in `runtime`.
    void tick(const Runtime& runtime);
    // Both drop every handler; the tick count and the generator stay.
    void reset();
    void free();

    Rng& rng();
    std::size_t handler_count() const { return handlers_.size(); }

    Ticks spent_ticks = 0;  // ticks run so far

private:
    struct TickHandler {
        InstanceId instance;
        Callback callback;
    };
    void drop_handlers();

    std::optional<Rng> rng_;
    // A deque: appending during the walk never moves the handler that is running.
    std::deque<TickHandler> handlers_;
    // Handlers dropped during a walk, kept until it ends since one of them may be running.
    std::deque<TickHandler> dropped_;
    bool ticking_ = false;
};

}  // namespace veldra
