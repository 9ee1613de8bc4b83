#include "async/room_goer.h"

#include "runtime/runtime.h"

namespace veldra {

Promise<void> room_goto_or_restart(Runtime& runtime, int room) {
    return Promise<void>([&runtime, room](const Resolve<void>& resolve, const Reject&) {
        runtime.instance_create_depth<obj_room_goer>(0, 0, 0).callback = resolve;
        if (room == runtime.room())
            runtime.room_restart();
        else
            runtime.room_goto(room);
    });
}

void obj_room_goer::on_create() {
    persistent = true;
    current_time_at_create = runtime().current_time();
    room_start_event_called = false;
}

void obj_room_goer::on_room_start() {
    // A goer made while a room is starting (by a start-up entity's create event) is there for
    // that room's start too; only the start of the room it asked for counts.
    if (!runtime().room_change_pending())
        room_start_event_called = true;
}

void obj_room_goer::on_step() {
    if (runtime().current_time() <= current_time_at_create || !room_start_event_called)
        return;
    if (callback)
        callback();
    runtime().instance_destroy(id());
}

}  // namespace veldra
