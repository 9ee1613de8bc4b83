#include "async/waiters.h"

#include <utility>

#include "runtime/runtime.h"

namespace veldra {

Promise<void> wait_one_step(Runtime& runtime) {
    return Promise<void>([&runtime](const Resolve<void>& resolve, const Reject&) {
        detail::create_waiter<obj_step_waiter>(runtime).callback = resolve;
    });
}

Promise<void> wait_condition(Runtime& runtime, std::function<bool()> condition) {
    return Promise<void>(
        [&runtime, condition = std::move(condition)](const Resolve<void>& resolve, const Reject&) {
            auto& waiter = detail::create_waiter<obj_condition_waiter>(runtime);
            waiter.condition = condition;
            waiter.callback = resolve;
        });
}

void obj_step_waiter::on_create() {
    current_time_at_create = runtime().current_time();
}

void obj_step_waiter::on_step() {
    if (runtime().current_time() <= current_time_at_create)
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
