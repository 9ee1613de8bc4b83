#pragma once
// Waiting for trial ticks: a promise fulfilled from a tick handler, so game logic can wait in
// simulated time rather than in frames, whatever the game speed.

#include "async/promise.h"
#include "runtime/instance.h"
#include "util/ticks.h"

namespace veldra {

class Runtime;
class Ticker;

// Fulfilled (with no value) after `num_ticks` ticks of `ticker`; 0 and negative counts wait
// one tick too. The tick handler belongs to `instance`: if it goes first, the promise stays
// pending. The ticker is its trial's; `trial` is that trial entity, watched by the waiter,
// which gives up (promise pending for ever) once the trial is gone. The ticker is only used
// while the executor runs, so it need not outlive the waiter.
Promise<void> wait_ticks(Runtime& runtime, Ticker& ticker, InstanceId trial, InstanceId instance,
                         Ticks num_ticks);

class obj_tick_waiter : public Instance {
    VELDRA_OBJECT(obj_tick_waiter, Instance)
public:
    // Registers the countdown with `ticker` on behalf of `instance`; skipped when the trial is
    // already gone, which the next step notices.
    void initialize(Ticker& ticker, InstanceId trial, InstanceId instance, Ticks ticks,
                    Resolve<void> callback);
    void on_step() override;

    InstanceId trial = NO_INSTANCE;
    InstanceId instance = NO_INSTANCE;
    Ticks ticks = 0;  // ticks still to wait
    Resolve<void> callback;
    bool callback_done = false;

private:
    void count_down();
};

}  // namespace veldra
