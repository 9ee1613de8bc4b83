#include "async/waiters.h"

#include <utility>

#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra {

Promise wait_one_step() {
    return Promise([](const Resolve& resolve, const Reject&) {
        detail::create_waiter<obj_step_waiter>().callback = resolve;
    });
}

Promise wait_condition(std::function<bool()> condition) {
    return Promise([condition = std::move(condition)](const Resolve& resolve, const Reject&) {
        auto& waiter = detail::create_waiter<obj_condition_waiter>();
        waiter.condition = condition;
        waiter.callback = resolve;
    });
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
