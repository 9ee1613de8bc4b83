// promise_resolve / promise_reject and the four combinators. The combinators share one shape:
// each input's outcome either settles the combined promise at once or is recorded in its input
// slot, and the combined promise settles with the array of records once every slot is filled.

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "async/promise.h"
#include "async/promise_state.h"

namespace veldra {

namespace {

using Record = std::function<Value(const Value&)>;

// What one kind of outcome of an input does: settle the combined promise at once, or record.
struct Reaction {
    PromiseSettler settle_at_once;
    Record record;
};

// How a combinator reacts, made from the combined promise's own resolve and reject.
struct Plan {
    Reaction on_fulfilled;
    Reaction on_rejected;
    PromiseSettler when_all_recorded;  // called with the array of records
};
using Planner = Plan (*)(const Resolve& resolve, const Reject& reject);

struct Slots {
    std::vector<Value> records;
    std::size_t left = 0;
};

detail::PromiseCallback react(const Reaction& reaction, std::size_t index,
                              const std::shared_ptr<Slots>& slots,
                              const PromiseSettler& when_all_recorded) {
    return [reaction, index, slots, when_all_recorded](const Value& outcome) {
        if (reaction.settle_at_once) {
            reaction.settle_at_once(outcome);
            return;
        }
        slots->records[index] = reaction.record(outcome);
        if (--slots->left == 0)
            when_all_recorded(Value::array(std::move(slots->records)));
    };
}

Promise combine(const std::vector<Promise>& inputs, Planner make_plan) {
    return Promise([inputs, make_plan](const Resolve& resolve, const Reject& reject) {
        const Plan plan = make_plan(resolve, reject);
        if (inputs.empty()) {
            plan.when_all_recorded(Value::array());
            return;
        }
        auto slots = std::make_shared<Slots>();
        slots->records.resize(inputs.size());
        slots->left = inputs.size();
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            const auto& state = detail::PromiseAccess::state_of(inputs[i]);
            detail::add_resolve_callback(
                state, react(plan.on_fulfilled, i, slots, plan.when_all_recorded));
            detail::add_reject_callback(state,
                                        react(plan.on_rejected, i, slots, plan.when_all_recorded));
        }
    });
}

Value as_is(const Value& outcome) {
    return outcome;
}

Value settled_record(const char* status, const char* field, const Value& outcome) {
    Value record = Value::make_struct();
    record.set("status", status);
    record.set(field, outcome);
    return record;
}

Value fulfilled_record(const Value& value) {
    return settled_record("fulfilled", "value", value);
}
Value rejected_record(const Value& reason) {
    return settled_record("rejected", "reason", reason);
}

}  // namespace

Promise promise_resolve(const Value& value) {
    return Promise([value](const Resolve& resolve, const Reject&) { resolve(value); });
}

Promise promise_reject(const Value& reason) {
    return Promise([reason](const Resolve&, const Reject& reject) { reject(reason); });
}

Promise promise_all(const std::vector<Promise>& promises) {
    return combine(promises, [](const Resolve& resolve, const Reject& reject) {
        return Plan{{{}, as_is}, {reject, {}}, resolve};
    });
}

Promise promise_any(const std::vector<Promise>& promises) {
    return combine(promises, [](const Resolve& resolve, const Reject& reject) {
        return Plan{{resolve, {}}, {{}, as_is}, reject};
    });
}

// Nothing is ever recorded, so an empty race never settles: its "all recorded" does nothing.
Promise promise_race(const std::vector<Promise>& promises) {
    return combine(promises, [](const Resolve& resolve, const Reject& reject) {
        return Plan{{resolve, {}}, {reject, {}}, {}};
    });
}

Promise promise_all_settled(const std::vector<Promise>& promises) {
    return combine(promises, [](const Resolve& resolve, const Reject&) {
        return Plan{{{}, fulfilled_record}, {{}, rejected_record}, resolve};
    });
}

}  // namespace veldra
