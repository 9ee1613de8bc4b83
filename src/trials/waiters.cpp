#include "trials/waiters.h"

#include <utility>

#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/ticker.h"

namespace veldra {

namespace {

template <class Waiter>
Waiter& create_waiter() {
    return rt().instance_create_depth<Waiter>(0, 0, 0);
}

}  // namespace

Promise wait_ticks(Ticker& ticker, InstanceId trial, InstanceId instance, std::int64_t num_ticks) {
    return Promise([&ticker, trial, instance, num_ticks](const Resolve& resolve, const Reject&) {
        create_waiter<obj_tick_waiter>().initialize(ticker, trial, instance, num_ticks, resolve);
    });
}

Promise wait_one_step() {
    return Promise([](const Resolve& resolve, const Reject&) {
        create_waiter<obj_step_waiter>().callback = resolve;
    });
}

Promise wait_condition(std::function<bool()> condition) {
    return Promise([condition = std::move(condition)](const Resolve& resolve, const Reject&) {
        auto& waiter = create_waiter<obj_condition_waiter>();
        waiter.condition = condition;
        waiter.callback = resolve;
    });
}

void obj_tick_waiter::initialize(Ticker& ticker, InstanceId trial_id, InstanceId instance_id,
                                 std::int64_t num_ticks, Resolve resolve) {
    trial = trial_id;
    instance = instance_id;
    ticks = num_ticks;
    callback = std::move(resolve);
    if (!runtime().instance_exists(trial))
        return;
    // By id, not by pointer: the handler belongs to `instance` and may outlive this waiter.
    ticker.on_tick(instance, [waiter_id = id()](std::int64_t, Rng&) {
        if (auto* waiter = rt().find_as<obj_tick_waiter>(waiter_id))
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

void obj_step_waiter::on_create() {
    current_time_at_create = current_time();
}

void obj_step_waiter::on_step() {
    if (current_time() <= current_time_at_create)
        return;
    callback();
    runtime().instance_destroy(id());
}

void obj_condition_waiter::on_step() {
    if (!condition())
        return;
    callback();
    runtime().instance_destroy(id());
}

}  // namespace veldra
