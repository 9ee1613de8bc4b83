#include "async/promise.h"

#include <exception>
#include <utility>

#include "async/promise_state.h"

namespace veldra {

using detail::StatePtr;

PromiseStatus UntypedPromise::status() const {
    return state_->status;
}
const Value& UntypedPromise::reason() const {
    return state_->reason;
}
const std::any& UntypedPromise::untyped_value() const {
    return state_->value;
}
const std::vector<std::string>& UntypedPromise::debug_callstack() const {
    return state_->debug_callstack;
}

void detail::Settler::fulfill_with(std::any value) const {
    if (state_)
        detail::fulfill(state_, std::move(value));
}

void Reject::operator()(const Value& reason) const {
    if (state_)
        detail::reject(state_, reason);
}

void Cancel::operator()() const {
    if (state_)
        detail::cancel(state_);
}

namespace detail {

StatePtr start(std::function<void(const StatePtr& state)> executor, SourceLocation where) {
    StatePtr state = make_state(where);
    state->executor = std::move(executor);
    if (promise_settings().delayed_execution)
        promise_settings().queue.push_back(state);
    else
        execute(state);
    return state;
}

namespace {

// Settles `next` with what the handler makes of the outcome. Only the handler's own exceptions
// become a rejection; whatever runs downstream while `next` settles is not this handler's.
template <class Run>
void run_handler(const StatePtr& next, Run&& run) {
    HandlerOutcome outcome;
    try {
        outcome = run();
    } catch (const std::exception& error) {
        reject(next, Value(error.what()));
        return;
    }
    if (outcome.follow)
        follow(next, outcome.follow);
    else
        fulfill(next, std::move(outcome.value));
}

}  // namespace

StatePtr chain(const StatePtr& source, Handlers handlers, SourceLocation where) {
    StatePtr next = make_state(where);
    // Passing on a reason that was already there adds no new failure: the rejection of the
    // source was judged when it happened.
    const bool passes_old_rejection_on =
        source->status == PromiseStatus::rejected && !handlers.on_rejected;
    next->in_construction = true;
    add_callback(source, [next, handlers = std::move(handlers)](const PromiseState& settled) {
        switch (settled.status) {
            case PromiseStatus::fulfilled:
                if (handlers.on_fulfilled)
                    run_handler(next, [&] { return handlers.on_fulfilled(settled.value); });
                else
                    fulfill(next, settled.value);
                break;
            case PromiseStatus::rejected:
                if (handlers.on_rejected)
                    run_handler(next, [&] { return handlers.on_rejected(settled.reason); });
                else
                    reject(next, settled.reason);
                break;
            case PromiseStatus::cancelled:
                if (handlers.on_cancelled)
                    run_handler(next, [&] { return handlers.on_cancelled(); });
                else
                    cancel(next);
                break;
            case PromiseStatus::pending:
                break;
        }
    });
    next->in_construction = false;
    // Settled here, before the caller could chain and_catch on it: judge it a step later.
    if (next->status == PromiseStatus::rejected && !passes_old_rejection_on)
        promise_settings().uncaught_checks.push_back(next);
    return next;
}

}  // namespace detail

void promises_set_uncaught_handler(UncaughtRejectionHandler handler) {
    detail::promise_settings().uncaught_handler = std::move(handler);
}

void promises_enable_debug(bool enabled) {
    detail::promise_settings().debug_enabled = enabled;
}

void promises_enable_delayed_execution(bool enabled) {
    detail::promise_settings().delayed_execution = enabled;
}

}  // namespace veldra
