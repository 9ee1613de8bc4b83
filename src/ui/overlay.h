#pragma once
// Overlays: what is drawn over the game with Dear ImGui and takes the keyboard and the pointer
// from it (popup menus, the dialogs, developer panels). Every overlay is an entity of a type
// derived from obj_overlay; together they are one stack, ordered by layer and, within a layer,
// by age. The one in front takes the keys and the pointer; the others are drawn but do not
// react. A dialog is in front of every menu; a background menu (the developer menu) stays
// behind the other menus, whenever it was opened.
//
// A new kind of overlay derives from obj_overlay, says its layer, draws in its own event while
// overlay_frame_open() and keeps what it drew in a ControlRecord, so tests and UI scripts find
// its controls like any other's.

#include <vector>

#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "ui/control_record.h"

namespace veldra {

class Runtime;

// Back to front.
enum class OverlayLayer { background_menu, panel, menu, dialog };

class obj_overlay : public Instance {
    VELDRA_OBJECT(obj_overlay, Instance)
public:
    virtual OverlayLayer overlay_layer() const = 0;
    // Whether it shows now; one that does not is not in the stack (a dialog host with nothing
    // to ask).
    virtual bool showing() const { return true; }
    // What it drew in its last frame.
    virtual const ControlRecord& controls() const = 0;

    // It takes the keyboard and the pointer this frame.
    bool in_front() const;
};

// Whether a Dear ImGui frame is open, so overlays may draw. Never in a run without a window.
bool overlay_frame_open();

// The overlay that takes the keys and the pointer; nullptr when none shows.
obj_overlay* front_overlay(const Runtime& runtime);
// The front one of the overlays at or behind `layer`.
obj_overlay* front_overlay_up_to(const Runtime& runtime, OverlayLayer layer);

// The overlays a click or a key may reach, front first: the front one alone, or, when it is a
// developer panel, every panel that shows (they sit side by side over the trial, not on top of
// one another). UI scripts look for their labels and texts in these.
std::vector<obj_overlay*> overlays_taking_input(const Runtime& runtime);

}  // namespace veldra
