#pragma once
// Promises made of several others, results in input order. A cancelled input settles like a
// rejected one would, as a cancellation: see the table in docs/promises.md.

#include <any>
#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "async/promise.h"

namespace veldra {

// One input's outcome, for promise_all_settled: status is fulfilled (value set), rejected
// (reason set) or cancelled.
template <class T>
struct SettledOutcome {
    PromiseStatus status = PromiseStatus::pending;
    std::optional<T> value;
    Value reason;
};
template <>
struct SettledOutcome<void> {
    PromiseStatus status = PromiseStatus::pending;
    Value reason;
};

namespace detail {

struct SlotOutcome {
    PromiseStatus status = PromiseStatus::pending;
    std::any value;
    Value reason;
};
using Collect = std::function<std::any(std::vector<SlotOutcome>& slots)>;
enum class Combination { all, any, race, all_settled };

// The untyped combinator: `collect` makes the value of an all or all_settled from the slots.
StatePtr combine(std::vector<StatePtr> inputs, Combination how, Collect collect,
                 SourceLocation where);

template <class T>
std::vector<StatePtr> states_of(const std::vector<Promise<T>>& promises) {
    std::vector<StatePtr> states;
    states.reserve(promises.size());
    for (const Promise<T>& promise : promises)
        states.push_back(state_of(promise));
    return states;
}

}  // namespace detail

// Fulfilled with all values once all are fulfilled; rejected (cancelled) as soon as one is
// rejected (cancelled). Empty input: fulfilled with nothing.
template <class T>
Promise<std::vector<T>> promise_all(const std::vector<Promise<T>>& promises,
                                    SourceLocation where = SourceLocation::current()) {
    return Promise<std::vector<T>>::adopt(detail::combine(
        detail::states_of(promises), detail::Combination::all,
        [](std::vector<detail::SlotOutcome>& slots) {
            std::vector<T> values;
            values.reserve(slots.size());
            for (detail::SlotOutcome& slot : slots)
                values.push_back(std::any_cast<T>(std::move(slot.value)));
            return std::any(std::move(values));
        },
        where));
}
inline Promise<void> promise_all(const std::vector<Promise<void>>& promises,
                                 SourceLocation where = SourceLocation::current()) {
    return Promise<void>::adopt(detail::combine(
        detail::states_of(promises), detail::Combination::all,
        [](std::vector<detail::SlotOutcome>&) { return std::any(); }, where));
}

// Fulfilled with the first value as soon as one is fulfilled. Once none can be: rejected with
// the array of the rejected inputs' reasons in input order, or cancelled when every input was
// cancelled. Empty input: rejected with an empty array.
template <class T>
Promise<T> promise_any(const std::vector<Promise<T>>& promises,
                       SourceLocation where = SourceLocation::current()) {
    return Promise<T>::adopt(
        detail::combine(detail::states_of(promises), detail::Combination::any, {}, where));
}

// Settles as the first of them settles. Empty input: pending for ever.
template <class T>
Promise<T> promise_race(const std::vector<Promise<T>>& promises,
                        SourceLocation where = SourceLocation::current()) {
    return Promise<T>::adopt(
        detail::combine(detail::states_of(promises), detail::Combination::race, {}, where));
}

// Fulfilled once all have settled, with each one's outcome in input order; never rejected.
template <class T>
Promise<std::vector<SettledOutcome<T>>> promise_all_settled(
    const std::vector<Promise<T>>& promises, SourceLocation where = SourceLocation::current()) {
    return Promise<std::vector<SettledOutcome<T>>>::adopt(detail::combine(
        detail::states_of(promises), detail::Combination::all_settled,
        [](std::vector<detail::SlotOutcome>& slots) {
            std::vector<SettledOutcome<T>> outcomes;
            outcomes.reserve(slots.size());
            for (detail::SlotOutcome& slot : slots) {
                SettledOutcome<T> outcome;
                outcome.status = slot.status;
                outcome.reason = slot.reason;
                if constexpr (!std::is_void_v<T>) {
                    if (slot.status == PromiseStatus::fulfilled)
                        outcome.value = std::any_cast<T>(std::move(slot.value));
                }
                outcomes.push_back(std::move(outcome));
            }
            return std::any(std::move(outcomes));
        },
        where));
}

}  // namespace veldra
