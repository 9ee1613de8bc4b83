#pragma once
// Puts the in-game dialogs into a windowed run: ImGuiDialogs answers the game's questions, and
// one persistent entity draws them every frame, between the window's input poll (which opens the
// Dear ImGui frame) and presenting (which draws it over the game).

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class Runtime;

// Draws the runtime's ImGuiDialogs in the last event of the frame, so a dialog is submitted
// after every menu and stays in front of them. It draws nothing while the runtime's dialogs
// are another kind or no Dear ImGui frame is open (the window closed, a headless test).
class obj_dialog_host : public Instance {
    VELDRA_OBJECT(obj_dialog_host, Instance)
public:
    obj_dialog_host() { persistent = true; }
    void on_draw_gui_end() override;
};

// Replaces the services' dialogs with ImGuiDialogs and creates the host. Call once, when the
// window has opened; the host is persistent, so it may be made before the first room starts.
void install_window_dialogs(Runtime& runtime);

}  // namespace veldra
