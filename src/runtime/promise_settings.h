#pragma once
// The promise library's settings and its pending work. They sit with the process state because
// a promise is made and settled at any depth (inside an HTTP callback, a dialog answer, a
// waiter) where nobody could hand it an event loop; the promise event loop entity only runs
// what is queued here, once per step.

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace veldra {

class UntypedPromise;
namespace detail {
struct PromiseState;
}

struct PromiseSettings {
    std::function<void(const UntypedPromise& promise)>
        uncaught_handler;  // none: rejections go unseen
    bool debug_enabled = false;
    bool delayed_execution = false;
    // Promises whose executors are still to run, oldest first.
    std::deque<std::shared_ptr<detail::PromiseState>> queue;
    // Promises rejected inside and_then: reported at the next step unless caught by then.
    std::vector<std::shared_ptr<detail::PromiseState>> uncaught_checks;
};

}  // namespace veldra
