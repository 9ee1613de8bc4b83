#pragma once
// Puts the in-game dialogs into a windowed run: ImGuiDialogs answers the game's questions, and
// one persistent overlay draws them every frame while the window's Dear ImGui frame is open
// (ui/ui_frame.h).

#include "ui/overlay.h"

namespace veldra {

class ImGuiDialogs;
class Runtime;

// The dialogs' overlay, in front of every menu while a dialog shows. It draws its ImGuiDialogs
// in the last event of the frame, so a dialog is submitted after every menu and stays in front
// of them on the screen too. It draws nothing while no Dear ImGui frame is open (the window
// closed, a headless test).
class obj_dialog_host : public obj_overlay {
    VELDRA_OBJECT(obj_dialog_host, obj_overlay)
public:
    // `dialogs` outlive the host: they are the services' dialogs, which outlive every instance.
    explicit obj_dialog_host(ImGuiDialogs& dialogs) : dialogs_(dialogs) { persistent = true; }
    void on_draw_gui_end() override;

    OverlayLayer overlay_layer() const override { return OverlayLayer::dialog; }
    bool showing() const override;
    const ControlRecord& controls() const override;

private:
    ImGuiDialogs& dialogs_;
};

// Replaces the services' dialogs with ImGuiDialogs, creates the host and returns the dialogs
// (for their texts and for UI scripts). Call once, when the window has opened; the host is
// persistent, so it may be made before the first room starts.
ImGuiDialogs& install_window_dialogs(Runtime& runtime);

}  // namespace veldra
