#include "trials/tick_waiter.h"

#include <utility>

#include "async/waiters.h"
#include "runtime/runtime.h"
#include "trials/ticker.h"

namespace veldra {

Promise<void> wait_ticks(Runtime& runtime, Ticker& ticker, InstanceId trial, InstanceId instance,
                         Ticks num_ticks) {
    return Promise<void>([&runtime, &ticker, trial, instance, num_ticks](
                             const Resolve<void>& resolve, const Reject&) {
        detail::create_waiter<obj_tick_waiter>(runtime).initialize(ticker, trial, instance,
                                                                   num_ticks, resolve);
    });
}

void obj_tick_waiter::initialize(Ticker& ticker, InstanceId trial_id, InstanceId instance_id,
                                 Ticks num_ticks, Resolve<void> resolve) {
    trial = trial_id;
    instance = instance_id;
    ticks = num_ticks;
    callback = std::move(resolve);
    if (!runtime().instance_exists(trial))
        return;
    // By id, not by pointer: the handler belongs to `instance` and may outlive this waiter.
    ticker.on_tick(instance, [&runtime = runtime(), waiter_id = id()](Ticks, Rng&) {
        if (auto* waiter = runtime.find_as<obj_tick_waiter>(waiter_id))
            waiter->count_down();
    });
}

void obj_tick_waiter::count_down() {
    if (callback_done)
        return;
    if (--ticks > 0)
        return;
    callback_done = true;
    callback();
    runtime().instance_destroy(id());
}

void obj_tick_waiter::on_step() {
    if (!runtime().instance_exists(trial))
        runtime().instance_destroy(id());
}

}  // namespace veldra
