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
    Executor executor = std::exchange(state->executor, nullptr);
    state->in_construction = true;
    if (executor) {
        try {
            executor(PromiseAccess::settler(state, PromiseStatus::fulfilled),
                     PromiseAccess::settler(state, PromiseStatus::rejected));
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
void settle(const StatePtr& state, PromiseStatus outcome, const Value& result) {
    if (state->status != PromiseStatus::pending)
        return;
    state->status = outcome;
    const bool fulfilled = outcome == PromiseStatus::fulfilled;
    (fulfilled ? state->value : state->reason) = result;
    std::vector<PromiseCallback> callbacks =
        std::move(fulfilled ? state->resolve_callbacks : state->reject_callbacks);
    state->resolve_callbacks.clear();
    state->reject_callbacks.clear();
    for (const PromiseCallback& callback : callbacks)
        callback(result);
}

}  // namespace

void fulfill(const StatePtr& state, const Value& value) {
    settle(state, PromiseStatus::fulfilled, value);
}

void reject(const StatePtr& state, const Value& reason) {
    const bool was_pending = state->status == PromiseStatus::pending;
    settle(state, PromiseStatus::rejected, reason);
    if (was_pending && !state->in_construction)
        report_if_uncaught(state);
}

void add_resolve_callback(const StatePtr& state, PromiseCallback callback) {
    if (state->status == PromiseStatus::pending)
        state->resolve_callbacks.push_back(std::move(callback));
    else if (state->status == PromiseStatus::fulfilled)
        callback(state->value);
}

void add_reject_callback(const StatePtr& state, PromiseCallback callback) {
    state->has_reject_callback = true;
    if (state->status == PromiseStatus::pending)
        state->reject_callbacks.push_back(std::move(callback));
    else if (state->status == PromiseStatus::rejected)
        callback(state->reason);
}

void follow(const StatePtr& state, const StatePtr& source) {
    add_resolve_callback(source, [state](const Value& value) { fulfill(state, value); });
    add_reject_callback(source, [state](const Value& reason) { reject(state, reason); });
}

void report_if_uncaught(const StatePtr& state) {
    if (state->status != PromiseStatus::rejected || state->has_reject_callback)
        return;
    // A copy: the handler may install another handler while it runs.
    UncaughtRejectionHandler handler = promise_settings().uncaught_handler;
    if (handler)
        handler(PromiseAccess::wrap(state));
}

}  // namespace veldra::detail
