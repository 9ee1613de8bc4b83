#pragma once
// Shared by the promise tests: a promise settled from outside, and a fixture with a runtime of
// its own (with the promise event loop) that records the reasons of rejections nobody handled.

#include <gtest/gtest.h>

#include <vector>

#include "async/promise.h"
#include "async/promise_event_loop.h"
#include "runtime/gc.h"
#include "runtime/process_state.h"
#include "runtime/runtime.h"
#include "runtime/services.h"

namespace veldra::testing {

// A promise settled from outside, later, the way a waiter or an HTTP event settles one.
template <class T = Value>
struct Deferred {
    Resolve<T> resolve;
    Reject reject;
    Cancel cancel;
    Promise<T> promise{[this](const Resolve<T>& res, const Reject& rej, const Cancel& can) {
        resolve = res;
        reject = rej;
        cancel = can;
    }};
};

class PromiseFixture : public ::testing::Test {
protected:
    PromiseFixture() {
        promises_set_uncaught_handler(
            [this](const UntypedPromise& p) { uncaught.push_back(p.reason()); });
        start_promise_event_loop(runtime);
    }
    // The settings live in the process state: the next test starts with them all off.
    ~PromiseFixture() override {
        runtime.shutdown();
        process_state().promises = PromiseSettings{};
    }
    void step_event_loop() { runtime.run_frame(); }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    std::vector<Value> uncaught;
};

}  // namespace veldra::testing
