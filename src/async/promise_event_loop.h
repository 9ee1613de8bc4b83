#pragma once
// The persistent entity that runs promise executors one step later (delayed execution) and
// reports, one step later, rejections that and_then produced while the caller was still
// building its chain. The work itself waits in the promise settings of the process state; this
// entity gives it a place in the frame. Start-up creates it once, before anything awaits.

#include "runtime/instance.h"

namespace veldra {

class Runtime;

class obj_promise_event_loop : public Instance {
    VELDRA_OBJECT(obj_promise_event_loop, Instance)
public:
    void on_create() override;
    // Runs every queued executor, including ones queued meanwhile, then the pending checks.
    void on_step() override;
    void on_clean_up() override;
};

// Creates the event loop in `runtime`.
obj_promise_event_loop& start_promise_event_loop(Runtime& runtime);

}  // namespace veldra
