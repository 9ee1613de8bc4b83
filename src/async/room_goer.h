#pragma once
// The room changer: a room change (or restart) as a promise that is fulfilled once the target
// room has started.

#include "async/promise.h"
#include "runtime/instance.h"

namespace veldra {

class Runtime;

// Goes to `room`, or restarts it when it is the current room. The promise is fulfilled, with
// no value, in the first step after the room-start event that is also at a later millisecond
// than the call, so a chain continues in the new room, never in the old one.
Promise<void> room_goto_or_restart(Runtime& runtime, int room);

// Carries one room change out. Persistent, so that it sees the new room start.
class obj_room_goer : public Instance {
    VELDRA_OBJECT(obj_room_goer, Instance)
public:
    void on_create() override;
    void on_room_start() override;
    void on_step() override;

    Resolve<void> callback;
    double current_time_at_create = 0;  // milliseconds, the runtime's current_time
    bool room_start_event_called = false;
};

}  // namespace veldra
