#pragma once
// How a popup menu looks: one page drawn as a centred Dear ImGui window with one widget per entry.
// Only the popup menu entity uses it; the entity decides what a choice does.

#include <cstddef>
#include <optional>
#include <string>

#include "ui/control_record.h"
#include "ui/popup_menu.h"

namespace veldra::detail {

struct MenuWindowRequest {
    std::string name;         // the ImGui window's name; a new name makes a new window
    bool interactive = true;  // false below the top popup: dimmed, and no clicks or keys
    bool has_keys = true;     // the menu is the overlay in front (no dialog over it)
    bool take_focus = false;  // give it the keyboard (new on top, or the focus went nowhere)
    double page_age_ms = 0;   // how long the page has been shown (typed texts)
    bool dim_behind = false;  // darken the game under every menu
    std::optional<ScreenPoint> keep_clear;  // a point the menu stays off
};

struct MenuWindowResult {
    std::optional<std::size_t> chosen;  // the entry clicked, or activated with Enter or Space
    bool escape = false;                // Escape pressed, and not to leave a text field
    bool any_window_focused = false;    // some ImGui window has the keyboard
    // Per entry, under its label: the whole entry, a slider's bar, a field's box. The texts
    // are the menu's to fill.
    ControlRecord controls;
};

// Where the left edge of a menu `width` wide goes on a screen `screen_width` wide: centred,
// unless that covers `keep_clear`; then beside it, on the side with room.
float menu_window_left(float screen_width, float width, std::optional<ScreenPoint> keep_clear);

// Draws `page` in this frame; with `back_label` a back button follows the entries, as the entry
// after the last.
MenuWindowResult draw_menu_window(const MenuDefinition& page, const std::string* back_label,
                                  const MenuWindowRequest& request);

}  // namespace veldra::detail
