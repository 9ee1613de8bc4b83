#pragma once
// Inside the promise module: the shared state behind a Promise handle and the operations on it
// (the constructor's _execute, _fulfill, _reject, _add_resolve_callback, _add_reject_callback).
// Only the promise files and the event loop include this.

#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "runtime/promise_settings.h"
#include "runtime/source_location.h"

#include "async/promise.h"

namespace veldra::detail {

using PromiseCallback = std::function<void(const Value&)>;

struct PromiseState {
    Executor executor;  // released once it has run: it often captures what the chain needs
    PromiseStatus status = PromiseStatus::pending;
    Value value;
    Value reason;
    // Cleared at settlement; a callback added after settlement runs at once instead.
    std::vector<PromiseCallback> resolve_callbacks;
    std::vector<PromiseCallback> reject_callbacks;
    std::vector<std::string> debug_callstack;
    // Whether a reject callback was ever added: a rejection with none is "not caught".
    bool has_reject_callback = false;
    // While the promise is being made (its executor running, or and_then settling it from an
    // already settled one) a rejection is not reported at once: the maker checks afterwards.
    bool in_construction = false;
};

using StatePtr = std::shared_ptr<PromiseState>;

// The library's settings and queues, from the process state.
PromiseSettings& promise_settings();

struct PromiseAccess {
    static Promise wrap(StatePtr state) { return Promise(std::move(state)); }
    static const StatePtr& state_of(const Promise& promise) { return promise.state_; }
    static PromiseSettler settler(StatePtr state, PromiseStatus outcome) {
        return PromiseSettler(std::move(state), outcome);
    }
};

// A pending state with no executor; keeps the call stack when debugging is on.
StatePtr make_state(SourceLocation where);

// Runs the executor with this promise's resolve and reject functions; an exception rejects.
// Afterwards a rejection nobody catches goes to the uncaught handler.
void execute(const StatePtr& state);

void fulfill(const StatePtr& state, const Value& value);
void reject(const StatePtr& state, const Value& reason);
void add_resolve_callback(const StatePtr& state, PromiseCallback callback);
void add_reject_callback(const StatePtr& state, PromiseCallback callback);

// Settles `state` as `source` settles.
void follow(const StatePtr& state, const StatePtr& source);

// Calls the uncaught handler (when set) if the promise is rejected and nothing catches it.
void report_if_uncaught(const StatePtr& state);

}  // namespace veldra::detail
