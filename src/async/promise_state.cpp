#include "async/promise_state.h"

#include <exception>
#include <utility>

#include "runtime/callstack.h"
#include "runtime/process_state.h"

namespace veldra::detail {

PromiseSettings& promise_settings() {
    return process_state().promises;
}

StatePtr make_state(SourceLocation where) {
    auto state = std::make_shared<PromiseState>();
    if (promise_settings().debug_enabled)
        state->debug_callstack = debug_get_callstack(where);
    return state;
}

void execute(const StatePtr& state) {
    auto executor = std::exchange(state->executor, nullptr);
    state->in_construction = true;
    if (executor) {
        try {
            executor(state);
        } catch (const std::exception& error) {
            reject(state, Value(error.what()));
        }
    }
    state->in_construction = false;
    report_if_uncaught(state);
}

namespace {

// Moves the callbacks out before calling them: the state is settled by then, so a callback
// that chains on it again runs at once rather than landing in the list being walked.
void settle(const StatePtr& state, PromiseStatus outcome) {
    state->status = outcome;
    std::vector<PromiseCallback> callbacks = std::move(state->callbacks);
    state->callbacks.clear();
    for (const PromiseCallback& callback : callbacks)
        callback(*state);
}

}  // namespace

void fulfill(const StatePtr& state, std::any value) {
    if (state->status != PromiseStatus::pending)
        return;
    state->value = std::move(value);
    settle(state, PromiseStatus::fulfilled);
}

void reject(const StatePtr& state, const Value& reason) {
    if (state->status != PromiseStatus::pending)
        return;
    state->reason = reason;
    settle(state, PromiseStatus::rejected);
    if (!state->in_construction)
        report_if_uncaught(state);
}

void cancel(const StatePtr& state) {
    if (state->status != PromiseStatus::pending)
        return;
    settle(state, PromiseStatus::cancelled);
}

void add_callback(const StatePtr& state, PromiseCallback callback) {
    state->has_callback = true;
    if (state->status == PromiseStatus::pending)
        state->callbacks.push_back(std::move(callback));
    else
        callback(*state);
}

void follow(const StatePtr& state, const StatePtr& source) {
    add_callback(source, [state](const PromiseState& settled) {
        switch (settled.status) {
            case PromiseStatus::fulfilled:
                fulfill(state, settled.value);
                break;
            case PromiseStatus::rejected:
                reject(state, settled.reason);
                break;
            case PromiseStatus::cancelled:
                cancel(state);
                break;
            case PromiseStatus::pending:
                break;
        }
    });
}

void report_if_uncaught(const StatePtr& state) {
    if (state->status != PromiseStatus::rejected || state->has_callback)
        return;
    // A copy: the handler may install another handler while it runs.
    UncaughtRejectionHandler handler = promise_settings().uncaught_handler;
    if (handler)
        handler(PromiseAccess::wrap(state));
}

}  // namespace veldra::detail
