#pragma once
// The persistent entity that runs promise executors one step later (delayed execution) and
// reports, one step later, rejections that and_then produced while the caller was still
// building its chain.

#include <deque>
#include <memory>
#include <vector>

#include "runtime/instance.h"

namespace veldra {

namespace detail {
struct PromiseState;
}

class obj_promise_event_loop : public Instance {
    VELDRA_OBJECT(obj_promise_event_loop, Instance)
public:
    void on_create() override;
    // Runs every queued executor, including ones queued meanwhile, then the pending checks.
    void on_step() override;
    void on_clean_up() override;

    // Promises whose executors are still to run, oldest first.
    std::deque<std::shared_ptr<detail::PromiseState>> queue;
    // Promises rejected inside and_then: reported at the next step unless caught by then.
    std::vector<std::shared_ptr<detail::PromiseState>> uncaught_checks;
};

// The one event loop of the current runtime, created on first use.
obj_promise_event_loop& get_promise_event_loop();

}  // namespace veldra
