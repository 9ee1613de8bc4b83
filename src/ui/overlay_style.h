#pragma once
// How the overlays look, in one place: the numbers and colours of menus and dialogs (paddings,
// rounding, button sizes, the dimming of what lies behind), and the style each pushes while its
// window is built. A menu and a dialog differ on purpose: a dialog is a smaller, plainer window
// in the window theme's colours.

#include <imgui.h>

namespace veldra::overlay_style {

// Both kinds.
inline const ImVec2 ITEM_SPACING{12, 12};
inline constexpr float SLIDER_GRAB_SIZE = 18;

// Menus.
inline const ImVec4 MENU_BACKGROUND{0.06f, 0.07f, 0.09f, 0.95f};
inline const ImVec4 MENU_EDGE{0.93f, 0.75f, 0.31f, 0.55f};
inline const ImVec4 LINK_TEXT{0.55f, 0.78f, 1.0f, 1.0f};
inline const ImVec4 MENU_DIM_BEHIND{0.02f, 0.03f, 0.05f, 0.6f};
inline const ImVec2 MENU_WINDOW_PADDING{32, 28};
inline const ImVec2 MENU_FRAME_PADDING{14, 9};
inline constexpr float MENU_ROUNDING = 10;
inline constexpr float MENU_EDGE_WIDTH = 1.5f;
inline constexpr float MENU_FRAME_ROUNDING = 6;
inline constexpr float SLIDER_GRAB_ROUNDING = 4;
// Popups below the top one recede, so that the one to answer stands out.
inline constexpr float RECEDED_ALPHA = 0.4f;
inline constexpr float SCREEN_MARGIN = 24;             // the nearest a menu comes to the edge
inline constexpr float FIELD_LABEL_COLUMN = 0.3f;      // where a field starts, part of the width
inline constexpr float SLIDER_NUMBER_BOX_WIDTH = 110;  // the typed value beside a slider

// Dialogs.
inline const ImVec4 DIALOG_DIM_BEHIND{0.02f, 0.03f, 0.05f, 0.55f};
inline const ImVec4 WARNING_TEXT{0.96f, 0.55f, 0.45f, 1};
inline const ImVec2 DIALOG_WINDOW_PADDING{28, 24};
inline const ImVec2 DIALOG_FRAME_PADDING{12, 8};
inline constexpr float DIALOG_ROUNDING = 6;
inline constexpr float DIALOG_BUTTON_MIN_WIDTH = 120;

// Every push is undone by its pop, after the window's End.
void push_menu_window_style();
void pop_menu_window_style();
void push_dialog_window_style();
void pop_dialog_window_style();

}  // namespace veldra::overlay_style
