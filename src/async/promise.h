#pragma once
// Promises: everything that spans frames (room changes, menus, HTTP, waits) is a chain of them.
// A Promise<T> is a handle to one shared state; copies are cheap and all see the same outcome.
// The state changes once, from pending to fulfilled (with a T), rejected (with a reason) or
// cancelled, and then calls the callbacks chained on it, in the order they were added.
// Everything runs on the one game thread: "later" always means a later step of some entity
// (the event loop, a waiter, the room goer, an HTTP event).
//
// Handlers take the value (or nothing) and return nothing, a value, or a Promise<U>; the
// promise made by and_then is typed after what the handler returns, and follows a returned
// promise. A std::exception thrown by an executor or a handler rejects with its what() text.
// Rejection reasons are Values (usually a text). A cancellation that no handler takes passes
// down the chain as a rejection does, but is never reported: see docs/promises.md.

#include <any>
#include <concepts>
#include <string>
#include <type_traits>
#include <utility>
#include "runtime/source_location.h"

#include "async/promise_untyped.h"
#include "runtime/value.h"

namespace veldra {

template <class T>
class Promise;

// The resolve function of a Promise<T>. Calling it on a settled promise does nothing.
template <class T>
class Resolve : public detail::Settler {
public:
    using Settler::Settler;
    void operator()(T value) const { fulfill_with(std::any(std::move(value))); }
};

template <>
class Resolve<void> : public detail::Settler {
public:
    using Settler::Settler;
    void operator()() const { fulfill_with(std::any()); }
};

namespace detail {

template <class R>
struct promised {
    using type = Promise<R>;
};
template <>
struct promised<const char*> {
    using type = Promise<std::string>;
};
template <class U>
struct promised<Promise<U>> {
    using type = Promise<U>;
};
// The promise a handler returning R makes: Promise<void> for void, Promise<U> for a
// Promise<U> (followed), Promise<R> for a plain value.
template <class R>
using promised_t = typename promised<std::decay_t<R>>::type;

template <class P>
struct promise_value;
template <class U>
struct promise_value<Promise<U>> {
    using type = U;
};
template <class R>
using promised_value_t = typename promise_value<promised_t<R>>::type;

// Calls a value handler with the value, or with nothing when it takes none.
template <class T, class F>
decltype(auto) call_with_value(F& fn, const std::any& value) {
    if constexpr (std::is_void_v<T>)
        return fn();
    else if constexpr (std::invocable<F&, const T&>)
        return fn(std::any_cast<const T&>(value));
    else
        return fn();
}

template <class F>
decltype(auto) call_with_reason(F& fn, const Value& reason) {
    if constexpr (std::invocable<F&, const Value&>)
        return fn(reason);
    else
        return fn();
}

template <class T, class F>
using value_handler_result_t =
    decltype(call_with_value<T>(std::declval<F&>(), std::declval<const std::any&>()));
template <class F>
using reason_handler_result_t =
    decltype(call_with_reason(std::declval<F&>(), std::declval<const Value&>()));

template <class P>
inline constexpr bool is_promise_v = false;
template <class U>
inline constexpr bool is_promise_v<Promise<U>> = true;

// Runs `call` and turns what it returns into an outcome of a Promise<U>.
template <class U, class Call>
HandlerOutcome run_to_outcome(Call&& call) {
    using R = decltype(call());
    if constexpr (std::is_void_v<R>) {
        call();
        return {};
    } else if constexpr (is_promise_v<std::decay_t<R>>) {
        return {{}, state_of(call())};
    } else if constexpr (std::is_void_v<U>) {
        call();
        return {};
    } else {
        return {std::any(U(call())), nullptr};
    }
}

// The type a catching handler leaves the chain with: the value type when it recovers with a
// value of it, void when it only looks (the fulfilled value is then dropped).
template <class T, class R>
using caught_value_t = std::conditional_t<std::is_void_v<promised_value_t<R>>, void, T>;

}  // namespace detail

template <class T>
class Promise : public UntypedPromise {
public:
    using value_type = T;

    // With delayed execution off (the default) the executor runs here, inside the constructor;
    // with it on, it runs in the event loop's next step. It is called with (resolve, reject)
    // or (resolve, reject, cancel). `where` is recorded as the innermost frame of
    // debug_callstack() when promise debugging is on.
    template <class F>
    requires(std::invocable<F&, const Resolve<T>&, const Reject&> ||
             std::invocable<F&, const Resolve<T>&, const Reject&,
                            const Cancel&>) explicit Promise(F executor,
                                                             SourceLocation where =
                                                                 SourceLocation::current())
        : UntypedPromise(detail::start(
              [fn = std::move(executor)](const detail::StatePtr& state) mutable {
                  if constexpr (std::invocable<F&, const Resolve<T>&, const Reject&, const Cancel&>)
                      fn(Resolve<T>(state), Reject(state), Cancel(state));
                  else
                      fn(Resolve<T>(state), Reject(state));
              },
              where)) {}

    // Any promise as a Promise<void>: the same state, its value not looked at.
    template <class U>
    requires(std::is_void_v<T> && !std::is_void_v<U>) Promise(const Promise<U>& other)
        : UntypedPromise(other.state_) {}

    // The value once fulfilled; std::bad_any_cast before.
    template <class U = T>
    requires(!std::is_void_v<U>) const U& value() const {
        return std::any_cast<const U&>(untyped_value());
    }

    // A new promise settled by the handler for this one's outcome. A handler added to a
    // settled promise runs at once, inside this call. Without the matching handler the outcome
    // passes on unchanged; an on_rejected that returns normally recovers the chain.
    template <class F>
    auto and_then(F on_fulfilled, SourceLocation where = SourceLocation::current()) const {
        using R = detail::value_handler_result_t<T, F>;
        using U = detail::promised_value_t<R>;
        return Promise<U>::adopt(
            detail::chain(state_, {fulfilled_handler<U>(std::move(on_fulfilled)), {}, {}}, where));
    }
    template <class F, class G>
    auto and_then(F on_fulfilled, G on_rejected,
                  SourceLocation where = SourceLocation::current()) const {
        using U = detail::promised_value_t<detail::value_handler_result_t<T, F>>;
        static_assert(
            std::is_same_v<U, detail::promised_value_t<detail::reason_handler_result_t<G>>>,
            "both handlers must leave the chain with the same type");
        return Promise<U>::adopt(detail::chain(state_,
                                               {fulfilled_handler<U>(std::move(on_fulfilled)),
                                                reason_handler<U>(std::move(on_rejected)),
                                                {}},
                                               where));
    }
    // A handler returning a T recovers with it; one returning nothing ends the chain's value
    // (the promise made is a Promise<void>).
    template <class G>
    auto and_catch(G on_rejected, SourceLocation where = SourceLocation::current()) const {
        using U = detail::caught_value_t<T, detail::reason_handler_result_t<G>>;
        return Promise<U>::adopt(
            detail::chain(state_, {{}, reason_handler<U>(std::move(on_rejected)), {}}, where));
    }
    // As and_catch, for a cancellation. The handler takes nothing.
    template <class H>
    auto and_cancelled(H on_cancelled, SourceLocation where = SourceLocation::current()) const {
        using U = detail::caught_value_t<T, decltype(std::declval<H&>()())>;
        return Promise<U>::adopt(detail::chain(state_,
                                               {{},
                                                {},
                                                [fn = std::move(on_cancelled)]() mutable {
                                                    return detail::run_to_outcome<U>(
                                                        [&]() -> decltype(auto) { return fn(); });
                                                }},
                                               where));
    }

    // Not provided: returns a promise rejected with "Not implemented yet.", which reaches the
    // uncaught handler unless someone catches it.
    template <class F>
    Promise<void> and_finally(F) const;

    // A promise on an existing state: the combinators' and the chains' results.
    static Promise adopt(detail::StatePtr state) { return Promise(std::move(state)); }

private:
    template <class U>
    friend class Promise;
    explicit Promise(detail::StatePtr state) : UntypedPromise(std::move(state)) {}

    template <class U, class F>
    static auto fulfilled_handler(F fn) {
        return [fn = std::move(fn)](const std::any& value) mutable {
            return detail::run_to_outcome<U>(
                [&]() -> decltype(auto) { return detail::call_with_value<T>(fn, value); });
        };
    }
    template <class U, class G>
    static auto reason_handler(G fn) {
        return [fn = std::move(fn)](const Value& reason) mutable {
            return detail::run_to_outcome<U>(
                [&]() -> decltype(auto) { return detail::call_with_reason(fn, reason); });
        };
    }
};

// Settled promises. Like every executor promise they wait for the event loop's next step when
// delayed execution is on.
inline Promise<void> promise_resolve() {
    return Promise<void>([](const Resolve<void>& resolve, const Reject&) { resolve(); });
}
template <class T>
Promise<T> promise_resolve(T value) {
    return Promise<T>(
        [value = std::move(value)](const Resolve<T>& resolve, const Reject&) { resolve(value); });
}
template <class T = void>
Promise<T> promise_reject(const Value& reason) {
    return Promise<T>([reason](const Resolve<T>&, const Reject& reject) { reject(reason); });
}
template <class T = void>
Promise<T> promise_cancelled() {
    return Promise<T>([](const Resolve<T>&, const Reject&, const Cancel& cancel) { cancel(); });
}

template <class T>
template <class F>
Promise<void> Promise<T>::and_finally(F) const {
    return promise_reject("Not implemented yet.");
}

}  // namespace veldra
