#pragma once
// The keys and buttons of every overlay, menus and dialogs alike. An overlay acts on keys only
// while it is the one in front (ui/overlay.h), and not in the frame it first shows, so the key
// that made the game open it does not answer it too. Enter and Space activate, Escape cancels
// or goes back, Tab moves on to the next field.

#include <imgui.h>

#include <string>

namespace veldra {

class OverlayKeys {
public:
    // `live`: the overlay has the keyboard this frame.
    explicit OverlayKeys(bool live) : live_(live) {}
    bool live() const { return live_; }

    // A key went down this frame (Enter includes the keypad's).
    bool pressed(ImGuiKey key) const;
    // A key went down this frame or repeats while held.
    bool pressed_or_repeated(ImGuiKey key) const;
    bool cancel() const { return pressed(ImGuiKey_Escape); }
    bool confirm() const { return pressed(ImGuiKey_Enter); }
    // Enter on the item just drawn while the keyboard highlight shows on it: the key a player
    // tries first on a button (Dear ImGui itself presses it with Space).
    bool activates_last_item() const;
    // Tab forward, while no field is being edited.
    bool moves_to_next_field() const;

private:
    bool live_;
};

// A button `width` wide (negative: to the window's right edge; 0: as wide as its label), pressed
// by a click, by Space while it has the keyboard and, when `keys` are given, by Enter on it.
bool overlay_button(const std::string& label, float width, const OverlayKeys* keys = nullptr);

}  // namespace veldra
