#include "startup/rooms.h"

#include "runtime/runtime.h"
#include "startup/app_state.h"
#include "startup/obj_init.h"

namespace veldra {

int add_rooms(AppState& app) {
    Runtime& runtime = app.runtime;
    Rooms& r = app.rooms;
    r.init = runtime.room_add(
        {"rm_init", [&app](Runtime& rt) { rt.instance_create<obj_init>(0, 0, "Instances", app); }});
    r.game = runtime.room_add({"rm_game", nullptr});
    runtime.set_layer_depth("Instances", 0);
    runtime.set_layer_depth("InstancesAbove", -1000);
    return r.init;
}

}  // namespace veldra
