#pragma once
// Promises: everything that spans frames (room changes, menus, HTTP, waits) is a chain of them.
// A Promise is a handle to one shared state; copies are cheap and all see the same outcome.
// The state changes once, from pending to fulfilled (with a value) or rejected (with a reason),
// and then calls the callbacks chained on it, in the order they were added. Everything runs on
// the one game thread: "later" always means a later step of some entity (the event loop, a
// waiter, the room goer, an HTTP event).
//
// Handlers (PromiseHandler) may take the value or nothing, and return nothing, anything a Value
// can be made from, or a Promise. A returned Promise is followed: the promise made by and_then
// settles as that one settles. A std::exception thrown by an executor or a handler rejects with
// its what() text.
//
// Unhandled rejections go to the handler set with promises_set_uncaught_handler; see
// docs/promises.md for exactly when a rejection counts as unhandled.

#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>
#include "runtime/source_location.h"

#include "runtime/value.h"

namespace veldra {

class Promise;

namespace detail {
struct PromiseState;
struct PromiseAccess;
}  // namespace detail

enum class PromiseStatus { pending = 0, fulfilled = 1, rejected = 2 };

// The resolve or the reject function of one promise. Holds the promise's state, so a waiter
// that keeps it keeps the whole chain behind it alive. Calling it on a settled promise does
// nothing. Default-constructed, it belongs to no promise and calling it does nothing.
class PromiseSettler {
public:
    PromiseSettler() = default;
    void operator()(const Value& value_or_reason = Value()) const;
    explicit operator bool() const { return static_cast<bool>(state_); }

private:
    friend struct detail::PromiseAccess;
    PromiseSettler(std::shared_ptr<detail::PromiseState> state, PromiseStatus outcome)
        : state_(std::move(state)), outcome_(outcome) {}
    std::shared_ptr<detail::PromiseState> state_;
    PromiseStatus outcome_ = PromiseStatus::fulfilled;
};
using Resolve = PromiseSettler;
using Reject = PromiseSettler;
using Executor = std::function<void(const Resolve& resolve, const Reject& reject)>;

// What a handler returns: a value to fulfil with, or a promise to follow.
class HandlerResult {
public:
    HandlerResult() = default;  // fulfil with undefined
    HandlerResult(const Promise& promise);
    template <class T>
    requires std::constructible_from<Value, T> HandlerResult(T&& value)
        : value_(std::forward<T>(value)) {}

    const Value& value() const { return value_; }
    // The promise to follow; nullptr when the result is a plain value.
    const std::shared_ptr<detail::PromiseState>& promise_state() const { return promise_; }

private:
    Value value_;
    std::shared_ptr<detail::PromiseState> promise_;
};

// A handler given to and_then / and_catch. Accepts callables taking (const Value&) or nothing,
// returning void, a Value (or anything a Value is made from) or a Promise. Empty means "not
// given": the outcome passes through unchanged.
class PromiseHandler {
public:
    using Function = std::function<HandlerResult(const Value&)>;

    PromiseHandler() = default;
    PromiseHandler(std::nullptr_t) {}
    template <class F>
    requires(!std::same_as<std::remove_cvref_t<F>, PromiseHandler> &&
             (std::invocable<F&, const Value&> || std::invocable<F&>)) PromiseHandler(F fn)
        : fn_(adapt(std::move(fn))) {}

    explicit operator bool() const { return static_cast<bool>(fn_); }
    HandlerResult operator()(const Value& value) const { return fn_(value); }

private:
    template <class F>
    static Function adapt(F fn) {
        return [fn = std::move(fn)](const Value& value) mutable -> HandlerResult {
            // A handler that ignores the value may leave the parameter out.
            auto call = [&]() -> decltype(auto) {
                if constexpr (std::invocable<F&, const Value&>)
                    return fn(value);
                else
                    return fn();
            };
            if constexpr (std::is_void_v<decltype(call())>) {
                call();
                return {};
            } else {
                return call();
            }
        };
    }
    Function fn_;
};

class Promise {
public:
    // With delayed execution off (the default) the executor runs here, inside the constructor;
    // with it on, it runs in the event loop's next step. `where` is recorded as the innermost
    // frame of debug_callstack() when promise debugging is on.
    explicit Promise(Executor executor, SourceLocation where = SourceLocation::current());

    PromiseStatus status() const;
    bool is_pending() const { return status() == PromiseStatus::pending; }
    bool is_fulfilled() const { return status() == PromiseStatus::fulfilled; }
    bool is_rejected() const { return status() == PromiseStatus::rejected; }
    const Value& value() const;   // undefined until fulfilled
    const Value& reason() const;  // undefined until rejected
    // The call stack at construction; empty unless promises_enable_debug(true) was in effect.
    const std::vector<std::string>& debug_callstack() const;

    // A new promise settled by the handler for this one's outcome. A handler added to a settled
    // promise runs at once, inside this call. Without the matching handler the outcome passes
    // on unchanged; with on_rejected, a rejection is recovered (the new promise is fulfilled).
    Promise and_then(PromiseHandler on_fulfilled, PromiseHandler on_rejected = {},
                     SourceLocation where = SourceLocation::current()) const;
    Promise and_catch(PromiseHandler on_rejected,
                      SourceLocation where = SourceLocation::current()) const;
    // Not provided: returns a promise rejected with "Not implemented yet.", which reaches the
    // uncaught handler unless someone catches it.
    Promise and_finally(PromiseHandler callback) const;

    // Same shared state.
    friend bool operator==(const Promise& a, const Promise& b) { return a.state_ == b.state_; }

private:
    friend struct detail::PromiseAccess;
    explicit Promise(std::shared_ptr<detail::PromiseState> state) : state_(std::move(state)) {}
    std::shared_ptr<detail::PromiseState> state_;
};

// Settled promises. Like every executor promise they wait for the event loop's next step when
// delayed execution is on.
Promise promise_resolve(const Value& value = Value());
Promise promise_reject(const Value& reason = Value());

// Fulfilled with the array of all values in input order once all are fulfilled; rejected with
// the first reason as soon as one is rejected. Empty input: fulfilled with an empty array.
Promise promise_all(const std::vector<Promise>& promises);
// Fulfilled with the first value as soon as one is fulfilled; rejected once all are rejected,
// with the array of their reasons in input order. Empty input: rejected with an empty array.
Promise promise_any(const std::vector<Promise>& promises);
// Settles as the first of them settles. Empty input: pending for ever.
Promise promise_race(const std::vector<Promise>& promises);
// Fulfilled once all have settled with an array, in input order, of structs
// { status: "fulfilled", value } or { status: "rejected", reason }. Empty input: empty array.
Promise promise_all_settled(const std::vector<Promise>& promises);

// Library settings, in the process state; all off until set.
using UncaughtRejectionHandler = std::function<void(const Promise& promise)>;
void promises_set_uncaught_handler(UncaughtRejectionHandler handler);
void promises_enable_debug(bool enabled);
void promises_enable_delayed_execution(bool enabled);

// The game's uncaught-rejection handler: logs the reason and the construction call stack (when
// kept) with log_error, the bar drawn red on the on-screen log. Start-up installs it.
void log_uncaught_rejection(const Promise& promise);

}  // namespace veldra
