#include "startup/rooms.h"

#include "runtime/context.h"
#include "runtime/runtime.h"
#include "startup/obj_init.h"

namespace veldra {

int add_rooms(Runtime& runtime) {
    Rooms& r = ctx().slot<Rooms>();
    r.init = runtime.room_add({"rm_init", [](Runtime& rt) { rt.instance_create<obj_init>(0, 0); }});
    r.game = runtime.room_add({"rm_game", nullptr});
    runtime.set_layer_depth("Instances", 0);
    runtime.set_layer_depth("InstancesAbove", -1000);
    return r.init;
}

const Rooms& rooms() {
    return ctx().slot<Rooms>();
}

}  // namespace veldra
