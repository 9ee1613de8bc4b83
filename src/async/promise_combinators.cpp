// The untyped side of the combinators. They share one shape: each input's outcome either
// settles the combined promise at once or is recorded in its input slot, and the combined
// promise settles from the slots once every slot is filled.

#include "async/promise_combinators.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "async/promise_state.h"

namespace veldra::detail {

namespace {

struct Slots {
    std::vector<SlotOutcome> outcomes;
    std::size_t left = 0;
};

// Whether this outcome of an input settles the combined promise at once.
bool settles_at_once(Combination how, PromiseStatus status) {
    switch (how) {
        case Combination::all:
            return status != PromiseStatus::fulfilled;
        case Combination::any:
            return status == PromiseStatus::fulfilled;
        case Combination::race:
            return true;
        case Combination::all_settled:
            return false;
    }
    return false;
}

void settle_as(const StatePtr& combined, const PromiseState& input) {
    switch (input.status) {
        case PromiseStatus::fulfilled:
            fulfill(combined, input.value);
            break;
        case PromiseStatus::rejected:
            reject(combined, input.reason);
            break;
        case PromiseStatus::cancelled:
            cancel(combined);
            break;
        case PromiseStatus::pending:
            break;
    }
}

// An any with no input fulfilled: the reasons of the rejected ones, or cancelled when none was
// rejected (every one was cancelled).
void settle_any_failed(const StatePtr& combined, const std::vector<SlotOutcome>& outcomes) {
    std::vector<Value> reasons;
    bool rejected = outcomes.empty();
    for (const SlotOutcome& outcome : outcomes) {
        if (outcome.status == PromiseStatus::rejected) {
            reasons.push_back(outcome.reason);
            rejected = true;
        }
    }
    if (rejected)
        reject(combined, Value::array(std::move(reasons)));
    else
        cancel(combined);
}

void settle_all_recorded(const StatePtr& combined, Combination how, const Collect& collect,
                         std::vector<SlotOutcome>& outcomes) {
    if (how == Combination::any)
        settle_any_failed(combined, outcomes);
    else if (how != Combination::race)  // a race records nothing: an empty one stays pending
        fulfill(combined, collect(outcomes));
}

}  // namespace

StatePtr combine(std::vector<StatePtr> inputs, Combination how, Collect collect,
                 SourceLocation where) {
    return start(
        [inputs = std::move(inputs), how, collect = std::move(collect)](const StatePtr& combined) {
            auto slots = std::make_shared<Slots>();
            slots->outcomes.resize(inputs.size());
            slots->left = inputs.size();
            if (inputs.empty()) {
                settle_all_recorded(combined, how, collect, slots->outcomes);
                return;
            }
            for (std::size_t i = 0; i < inputs.size(); ++i) {
                add_callback(inputs[i],
                             [combined, how, collect, slots, i](const PromiseState& input) {
                                 if (settles_at_once(how, input.status)) {
                                     settle_as(combined, input);
                                     return;
                                 }
                                 slots->outcomes[i] = {input.status, input.value, input.reason};
                                 if (--slots->left == 0)
                                     settle_all_recorded(combined, how, collect, slots->outcomes);
                             });
            }
        },
        where);
}

}  // namespace veldra::detail
