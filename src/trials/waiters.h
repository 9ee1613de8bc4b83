#pragma once
// Promises fulfilled by small entities from their step events (or, for ticks, from a tick
// handler): the way game logic waits for the next frame, for trial ticks or for a condition.
// Each waiter destroys itself once it has fired. They draw nothing and sit at depth 0.

#include <cstdint>
#include <functional>

#include "runtime/instance.h"
#include "trials/promise.h"

namespace veldra {

class Ticker;

// Fulfilled (with no value) after `num_ticks` ticks of `ticker`; 0 and negative counts wait
// one tick too. The tick handler belongs to `instance`: if it goes first, the promise stays
// pending. The ticker is its trial's; `trial` is that trial entity, watched by the waiter,
// which gives up (promise pending for ever) once the trial is gone. The ticker is only used
// while the executor runs, so it need not outlive the waiter.
Promise wait_ticks(Ticker& ticker, InstanceId trial, InstanceId instance, std::int64_t num_ticks);

// Fulfilled in the first step of the waiter at a later millisecond than its creation: in
// practice the next frame.
Promise wait_one_step();

// Fulfilled in the first step of the waiter in which condition() is true; never tested in this
// call, so a condition that already holds still waits for the next step.
Promise wait_condition(std::function<bool()> condition);

class obj_tick_waiter : public Instance {
    VELDRA_OBJECT(obj_tick_waiter, Instance)
public:
    // Registers the countdown with `ticker` on behalf of `instance`; skipped when the trial is
    // already gone, which the next step notices.
    void initialize(Ticker& ticker, InstanceId trial, InstanceId instance, std::int64_t ticks,
                    Resolve callback);
    void on_step() override;

    InstanceId trial = NO_INSTANCE;
    InstanceId instance = NO_INSTANCE;
    std::int64_t ticks = 0;  // ticks still to wait
    Resolve callback;
    bool callback_done = false;

private:
    void count_down();
};

class obj_step_waiter : public Instance {
    VELDRA_OBJECT(obj_step_waiter, Instance)
public:
    void on_create() override;
    void on_step() override;

    Resolve callback;
    double current_time_at_create = 0;  // milliseconds, the runtime's current_time
};

class obj_condition_waiter : public Instance {
    VELDRA_OBJECT(obj_condition_waiter, Instance)
public:
    void on_step() override;

    std::function<bool()> condition;
    Resolve callback;
};

}  // namespace veldra
