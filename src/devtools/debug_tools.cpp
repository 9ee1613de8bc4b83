#include "devtools/debug_tools.h"

#include "devtools/config_watcher.h"
#include "devtools/debug_menu.h"
#include "devtools/debug_terminal.h"
#include "devtools/debug_visualizer.h"
#include "devtools/inspector.h"
#include "devtools/time_control.h"
#include "devtools/workbench_panel.h"
#include "runtime/input.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/simulation_state.h"

namespace veldra {

void obj_debug_tools::on_step_begin() {
    const InputFrame& input = runtime().services().input->frame();
    if (input.down(Key::ctrl) && input.pressed(Key::d))
        visible = !visible;
}

obj_debug_tools& create_debug_tools(Runtime& runtime, DebugToolsContext context) {
    auto& tools = runtime.instance_create<obj_debug_tools>(0, 0, "Instances", context);
    runtime.instance_create<obj_debug_menu>(0, 0, "Instances");
    runtime.instance_create<obj_formula_workbench>(0, 0, "Instances");
    runtime.instance_create<obj_config_watcher>(0, 0, "Instances");
    runtime.instance_create<obj_debug_terminal>(0, 0, "Instances");
    runtime.instance_create<obj_debug_time_control>(0, 0, "Instances");
    runtime.instance_create<obj_debug_visualizer>(0, 0, "Instances");
    runtime.instance_create<obj_inspector>(0, 0, "Instances");
    return tools;
}

obj_debug_tools* find_debug_tools(const Runtime& runtime) {
    return runtime.instance_find<obj_debug_tools>(0);
}

bool debug_panels_showing(const Runtime& runtime) {
    const obj_debug_tools* tools = find_debug_tools(runtime);
    return tools && tools->visible && tools->context.sim.current_trial() != nullptr;
}

}  // namespace veldra
