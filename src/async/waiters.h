#pragma once
// Promises fulfilled by small entities from their step events: the way game logic waits for the
// next frame or for a condition. Each waiter destroys itself once it has fired. They draw
// nothing and sit at depth 0. Waiting for trial ticks is trials/tick_waiter.h.

#include <functional>

#include "async/promise.h"
#include "runtime/instance.h"
#include "runtime/runtime.h"

namespace veldra {

// Fulfilled in the first step of the waiter at a later millisecond than its creation: in
// practice the next frame.
Promise<void> wait_one_step(Runtime& runtime);

// Fulfilled in the first step of the waiter in which condition() is true; never tested in this
// call, so a condition that already holds still waits for the next step.
Promise<void> wait_condition(Runtime& runtime, std::function<bool()> condition);

namespace detail {
// Every waiter sits at depth 0 at the origin: it has nothing to show.
template <class Waiter>
Waiter& create_waiter(Runtime& runtime) {
    return runtime.instance_create_depth<Waiter>(0, 0, 0);
}
}  // namespace detail

class obj_step_waiter : public Instance {
    VELDRA_OBJECT(obj_step_waiter, Instance)
public:
    void on_create() override;
    void on_step() override;

    Resolve<void> callback;
    double current_time_at_create = 0;  // milliseconds, the runtime's current_time
};

class obj_condition_waiter : public Instance {
    VELDRA_OBJECT(obj_condition_waiter, Instance)
public:
    void on_step() override;

    std::function<bool()> condition;
    Resolve<void> callback;
};

}  // namespace veldra
