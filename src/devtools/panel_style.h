#pragma once
// Where the developer panels sit on the 1600 x 900 screen and how they look, in one place, so
// that they share the screen without covering one another: the debug menu and the inspector in
// a column at the right, the time control under the HUD's time bar, the terminal at the bottom
// left and the formula workbench above it. The panels are smaller and plainer than the game's
// menus: they sit over a running trial that the developer wants to keep seeing.

#include <imgui.h>

namespace veldra::panel_style {

struct PanelPlace {
    float x, y, width, height;  // logical pixels; height 0: as tall as the content
};

inline constexpr PanelPlace DEBUG_MENU{1280, 92, 310, 0};
inline constexpr PanelPlace INSPECTOR{1240, 515, 350, 375};
inline constexpr PanelPlace TIME_CONTROL{560, 92, 480, 0};
// Right of the keyboard hints in the lower left corner.
inline constexpr PanelPlace TERMINAL{330, 640, 900, 250};
inline constexpr PanelPlace WORKBENCH{10, 92, 540, 530};

inline const ImVec4 BACKGROUND{0.05f, 0.06f, 0.08f, 0.93f};
inline const ImVec2 WINDOW_PADDING{10, 8};
inline const ImVec2 ITEM_SPACING{8, 5};

// Places the next window at `place` and pushes the panels' style; pop_style after End.
void begin_place(const PanelPlace& place);
void push_style();
void pop_style();

// ImGui window flags of a panel that stays where it is put.
inline constexpr ImGuiWindowFlags FIXED_WINDOW =
    ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoSavedSettings;

}  // namespace veldra::panel_style
