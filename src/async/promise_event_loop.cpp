#include "async/promise_event_loop.h"

#include <utility>

#include "async/promise_state.h"
#include "runtime/runtime.h"

namespace veldra {

// Promise chains outlive rooms: a room change is itself awaited through a promise.
void obj_promise_event_loop::on_create() {
    persistent = true;
}

void obj_promise_event_loop::on_step() {
    PromiseSettings& settings = detail::promise_settings();
    while (!settings.queue.empty()) {
        std::shared_ptr<detail::PromiseState> state = std::move(settings.queue.front());
        settings.queue.pop_front();
        detail::execute(state);
    }
    std::vector<std::shared_ptr<detail::PromiseState>> checks = std::move(settings.uncaught_checks);
    settings.uncaught_checks.clear();
    for (const auto& state : checks)
        detail::report_if_uncaught(state);
}

void obj_promise_event_loop::on_clean_up() {
    PromiseSettings& settings = detail::promise_settings();
    settings.queue.clear();
    settings.uncaught_checks.clear();
}

obj_promise_event_loop& start_promise_event_loop(Runtime& runtime) {
    return runtime.instance_create_depth<obj_promise_event_loop>(0, 0, 0);
}

}  // namespace veldra
