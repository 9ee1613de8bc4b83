#pragma once
// Puts the in-game dialogs into a windowed run: ImGuiDialogs answers the game's questions, and
// one persistent entity draws them every frame, between the window's input poll (which opens the
// Dear ImGui frame) and presenting (which draws it over the game).

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class ImGuiDialogs;
class Runtime;

// Draws its ImGuiDialogs in the last event of the frame, so a dialog is submitted after every
// menu and stays in front of them. It draws nothing while no Dear ImGui frame is open (the
// window closed, a headless test).
class obj_dialog_host : public Instance {
    VELDRA_OBJECT(obj_dialog_host, Instance)
public:
    // `dialogs` outlive the host: they are the services' dialogs, which outlive every instance.
    explicit obj_dialog_host(ImGuiDialogs& dialogs) : dialogs_(dialogs) { persistent = true; }
    void on_draw_gui_end() override;

private:
    ImGuiDialogs& dialogs_;
};

// Replaces the services' dialogs with ImGuiDialogs, creates the host and returns the dialogs
// (for their texts and for UI scripts). Call once, when the window has opened; the host is
// persistent, so it may be made before the first room starts.
ImGuiDialogs& install_window_dialogs(Runtime& runtime);

}  // namespace veldra
