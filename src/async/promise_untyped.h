#pragma once
// The part of a promise that does not depend on the type of its value: the shared state
// handle, the outcome, the reject and cancel functions, and the operations that Promise<T>
// (async/promise.h) is a thin typed layer over. The value travels type-erased in a std::any;
// only the typed layer ever looks inside it, so the machinery here is compiled once.

#include <any>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "runtime/source_location.h"

#include "runtime/value.h"

namespace veldra {

namespace detail {
struct PromiseState;
struct PromiseAccess;
using StatePtr = std::shared_ptr<PromiseState>;
}  // namespace detail

class UntypedPromise;
template <class T>
class Promise;
namespace detail {
const StatePtr& state_of(const UntypedPromise& promise);
}

// Cancelled: the question was withdrawn (a dialog closed without an answer, a menu left). It is
// neither a success nor a failure, and nobody is told about one that no handler takes.
enum class PromiseStatus { pending = 0, fulfilled = 1, rejected = 2, cancelled = 3 };

// A handle to a promise's state whatever its value type: what the uncaught handler sees.
class UntypedPromise {
public:
    PromiseStatus status() const;
    bool is_pending() const { return status() == PromiseStatus::pending; }
    bool is_fulfilled() const { return status() == PromiseStatus::fulfilled; }
    bool is_rejected() const { return status() == PromiseStatus::rejected; }
    bool is_cancelled() const { return status() == PromiseStatus::cancelled; }
    const Value& reason() const;  // undefined unless rejected
    // The call stack at construction; empty unless promises_enable_debug(true) was in effect.
    const std::vector<std::string>& debug_callstack() const;

    // Same shared state.
    friend bool operator==(const UntypedPromise& a, const UntypedPromise& b) {
        return a.state_ == b.state_;
    }

protected:
    explicit UntypedPromise(detail::StatePtr state) : state_(std::move(state)) {}
    const std::any& untyped_value() const;
    detail::StatePtr state_;

    friend struct detail::PromiseAccess;
    friend const detail::StatePtr& detail::state_of(const UntypedPromise& promise);
    template <class U>
    friend class Promise;
};

namespace detail {

inline const StatePtr& state_of(const UntypedPromise& promise) {
    return promise.state_;
}

// What a handler made of an outcome: a value to fulfil with, or a promise to follow.
struct HandlerOutcome {
    std::any value;
    StatePtr follow;
};

// Empty means "not given": that outcome passes on unchanged.
struct Handlers {
    std::function<HandlerOutcome(const std::any& value)> on_fulfilled;
    std::function<HandlerOutcome(const Value& reason)> on_rejected;
    std::function<HandlerOutcome()> on_cancelled;
};

// Whoever holds a settler holds the promise's state, and with it the chain behind it.
class Settler {
public:
    Settler() = default;
    explicit Settler(StatePtr state) : state_(std::move(state)) {}
    explicit operator bool() const { return static_cast<bool>(state_); }

protected:
    void fulfill_with(std::any value) const;
    StatePtr state_;
};

// Makes a promise state and runs `executor` on it: at once, or in the event loop's next step
// when delayed execution is on.
StatePtr start(std::function<void(const StatePtr& state)> executor, SourceLocation where);
// The promise that `handlers` make of the outcome of `source`.
StatePtr chain(const StatePtr& source, Handlers handlers, SourceLocation where);

}  // namespace detail

// The reject function of a promise. Calling it on a settled promise does nothing; a
// default-constructed one belongs to no promise.
class Reject : public detail::Settler {
public:
    using Settler::Settler;
    void operator()(const Value& reason) const;
};

// The cancel function of a promise: settles it as cancelled.
class Cancel : public detail::Settler {
public:
    using Settler::Settler;
    void operator()() const;
};

// Library settings, in the process state; all off until set.
using UncaughtRejectionHandler = std::function<void(const UntypedPromise& promise)>;
void promises_set_uncaught_handler(UncaughtRejectionHandler handler);
void promises_enable_debug(bool enabled);
void promises_enable_delayed_execution(bool enabled);

// The game's uncaught-rejection handler: logs the reason and the construction call stack (when
// kept) with log_error, the bar drawn red on the on-screen log. Start-up installs it.
void log_uncaught_rejection(const UntypedPromise& promise);

}  // namespace veldra
