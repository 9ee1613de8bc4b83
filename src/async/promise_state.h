#pragma once
// Inside the promise module: the shared state behind a promise handle and the operations on it.
// Only the promise files and the event loop include this.

#include <any>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "runtime/promise_settings.h"
#include "runtime/source_location.h"

#include "async/promise_untyped.h"

namespace veldra::detail {

// Called once the promise has settled, with its state; it reads the outcome from there.
using PromiseCallback = std::function<void(const PromiseState& settled)>;

struct PromiseState {
    // Released once it has run: it often captures what the chain needs.
    std::function<void(const StatePtr& state)> executor;
    PromiseStatus status = PromiseStatus::pending;
    std::any value;
    Value reason;
    // Cleared at settlement; a callback added after settlement runs at once instead.
    std::vector<PromiseCallback> callbacks;
    std::vector<std::string> debug_callstack;
    // Whether a callback was ever added: every callback takes rejections too (a chain passes
    // them on), so a rejection with none is "not caught".
    bool has_callback = false;
    // While the promise is being made (its executor running, or and_then settling it from an
    // already settled one) a rejection is not reported at once: the maker checks afterwards.
    bool in_construction = false;
};

// The library's settings and queues, from the process state.
PromiseSettings& promise_settings();

struct PromiseAccess {
    static UntypedPromise wrap(StatePtr state) { return UntypedPromise(std::move(state)); }
};

// A pending state with no executor; keeps the call stack when debugging is on.
StatePtr make_state(SourceLocation where);

// Runs the executor with this promise's settlers; an exception rejects. Afterwards a rejection
// nobody catches goes to the uncaught handler.
void execute(const StatePtr& state);

void fulfill(const StatePtr& state, std::any value);
void reject(const StatePtr& state, const Value& reason);
void cancel(const StatePtr& state);
void add_callback(const StatePtr& state, PromiseCallback callback);

// Settles `state` as `source` settles.
void follow(const StatePtr& state, const StatePtr& source);

// Calls the uncaught handler (when set) if the promise is rejected and nothing catches it.
void report_if_uncaught(const StatePtr& state);

}  // namespace veldra::detail
