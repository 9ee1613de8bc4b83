#pragma once
// The debug menu: the debug settings' switches under the heading "Debug settings", each saved to
// debug/debug_settings.json the moment it changes, so the next start shows the same overlays.
// Eight switches carry a label; the other two (entity ids, the on-screen log) show their field
// names: only developers see them.

#include <span>
#include <string>

#include "config/debug_settings.h"
#include "ui/overlay.h"

namespace veldra {

struct DebugSwitch {
    const char* field;  // the key in the settings file
    const char* label;  // what the menu shows
    bool DebugSettings::*member;
};

// Every switch, in the menu's order.
std::span<const DebugSwitch> debug_switches();
// The switch of a field or a label, or nullptr.
const DebugSwitch* find_debug_switch(std::string_view field_or_label);

// Sets a switch and saves the settings at once; a save that fails logs a warning and the switch
// keeps its new value for this run.
void set_debug_switch(DebugSettings& settings, Files& files, const DebugSwitch& which, bool on);

inline constexpr const char* DEBUG_MENU_HEADING = "Debug settings";
inline constexpr const char* DEBUG_MENU_WORKBENCH = "Formula workbench";
inline constexpr const char* DEBUG_MENU_HINT = "Press Ctrl+D to hide debug tools";

class obj_debug_menu : public obj_overlay {
    VELDRA_OBJECT(obj_debug_menu, obj_overlay)
public:
    obj_debug_menu() { persistent = true; }
    void on_step() override;

    OverlayLayer overlay_layer() const override { return OverlayLayer::panel; }
    bool showing() const override;
    const ControlRecord& controls() const override { return controls_; }

private:
    ControlRecord controls_;
};

}  // namespace veldra
