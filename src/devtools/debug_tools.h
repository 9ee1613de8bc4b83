#pragma once
// The developer tools: panels and drawings over a played trial that show why the simulation does
// what it does. One persistent entity holds whether they show (Ctrl+D toggles it) and what they
// share; every panel is an overlay of its own (ui/overlay.h) that shows only while the tools are
// on and a trial is being played. A participant's window has none of it: the tools are made
// only with developer keys.

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class Files;
class Runtime;
struct DebugSettings;
struct SimulationState;

// What the panels read and change, all owned by the application and outliving the tools.
struct DebugToolsContext {
    SimulationState& sim;
    DebugSettings& debugs;  // the Debugs global, saved at once when a switch changes
    Files& files;           // where the debug settings are written
};

class obj_debug_tools : public Instance {
    VELDRA_OBJECT(obj_debug_tools, Instance)
public:
    explicit obj_debug_tools(DebugToolsContext context) : context(context) { persistent = true; }
    void on_step_begin() override;  // Ctrl+D

    DebugToolsContext context;
    bool visible = false;
    bool workbench_open = false;  // the formula workbench, opened from the debug menu
};

// Creates the tools and every panel, hidden; call once when a window with developer keys opens.
obj_debug_tools& create_debug_tools(Runtime& runtime, DebugToolsContext context);
// The tools, or nullptr when this run has none.
obj_debug_tools* find_debug_tools(const Runtime& runtime);
// Whether the panels show now: the tools are on and a trial is being played.
bool debug_panels_showing(const Runtime& runtime);

}  // namespace veldra
