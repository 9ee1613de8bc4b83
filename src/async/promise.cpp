#include "async/promise.h"

#include <exception>
#include <utility>

#include "async/promise_state.h"

namespace veldra {

using detail::PromiseAccess;
using detail::StatePtr;

void PromiseSettler::operator()(const Value& value_or_reason) const {
    if (!state_)
        return;
    if (outcome_ == PromiseStatus::fulfilled)
        detail::fulfill(state_, value_or_reason);
    else
        detail::reject(state_, value_or_reason);
}

HandlerResult::HandlerResult(const Promise& promise) : promise_(PromiseAccess::state_of(promise)) {}

Promise::Promise(Executor executor, SourceLocation where) : state_(detail::make_state(where)) {
    state_->executor = std::move(executor);
    if (detail::promise_settings().delayed_execution)
        detail::promise_settings().queue.push_back(state_);
    else
        detail::execute(state_);
}

PromiseStatus Promise::status() const {
    return state_->status;
}
const Value& Promise::value() const {
    return state_->value;
}
const Value& Promise::reason() const {
    return state_->reason;
}
const std::vector<std::string>& Promise::debug_callstack() const {
    return state_->debug_callstack;
}

namespace {

// Settles `next` with what the handler makes of `input`. Only the handler's own exceptions
// become a rejection; whatever runs downstream while `next` settles is not this handler's.
void run_handler(const StatePtr& next, const PromiseHandler& handler, const Value& input) {
    HandlerResult result;
    try {
        result = handler(input);
    } catch (const std::exception& error) {
        detail::reject(next, Value(error.what()));
        return;
    }
    if (result.promise_state())
        detail::follow(next, result.promise_state());
    else
        detail::fulfill(next, result.value());
}

}  // namespace

Promise Promise::and_then(PromiseHandler on_fulfilled, PromiseHandler on_rejected,
                          SourceLocation where) const {
    StatePtr next = detail::make_state(where);
    // Passing on a reason that was already there adds no new failure: the rejection of this
    // promise was judged when it happened.
    const bool passes_old_rejection_on = is_rejected() && !on_rejected;
    next->in_construction = true;
    detail::add_resolve_callback(state_,
                                 [next, handler = std::move(on_fulfilled)](const Value& value) {
                                     if (handler)
                                         run_handler(next, handler, value);
                                     else
                                         detail::fulfill(next, value);
                                 });
    detail::add_reject_callback(state_,
                                [next, handler = std::move(on_rejected)](const Value& reason) {
                                    if (handler)
                                        run_handler(next, handler, reason);
                                    else
                                        detail::reject(next, reason);
                                });
    next->in_construction = false;
    // Settled here, before the caller could chain and_catch on it: judge it a step later.
    if (next->status == PromiseStatus::rejected && !passes_old_rejection_on)
        detail::promise_settings().uncaught_checks.push_back(next);
    return PromiseAccess::wrap(std::move(next));
}

Promise Promise::and_catch(PromiseHandler on_rejected, SourceLocation where) const {
    return and_then(nullptr, std::move(on_rejected), where);
}

Promise Promise::and_finally(PromiseHandler) const {
    return promise_reject("Not implemented yet.");
}

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
