#pragma once
// Shared by the promise tests: a promise settled from outside, and a fixture with a fresh
// context that records the reasons of rejections nobody handled.

#include <gtest/gtest.h>

#include <vector>

#include "async/promise.h"
#include "runtime/context.h"
#include "runtime/runtime.h"

namespace veldra::testing {

// A promise settled from outside, later, the way a waiter or an HTTP event settles one.
struct Deferred {
    Resolve resolve;
    Reject reject;
    Promise promise{[this](const Resolve& res, const Reject& rej) {
        resolve = res;
        reject = rej;
    }};
};

class PromiseFixture : public ::testing::Test {
protected:
    PromiseFixture() {
        promises_set_uncaught_handler([this](const Promise& p) { uncaught.push_back(p.reason()); });
    }
    void step_event_loop() { rt().run_frame(); }

    Context context;
    ContextScope scope{context};
    std::vector<Value> uncaught;
};

}  // namespace veldra::testing
