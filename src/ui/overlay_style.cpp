#include "ui/overlay_style.h"

namespace veldra::overlay_style {

namespace {
constexpr int MENU_VARS = 9;
constexpr int MENU_COLOURS = 2;
constexpr int DIALOG_VARS = 4;
}  // namespace

void push_menu_window_style() {
    ImGui::PushStyleColor(ImGuiCol_WindowBg, MENU_BACKGROUND);
    ImGui::PushStyleColor(ImGuiCol_Border, MENU_EDGE);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, MENU_WINDOW_PADDING);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, MENU_ROUNDING);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, MENU_EDGE_WIDTH);
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, MENU_FRAME_PADDING);
    ImGui::PushStyleVar(ImGuiStyleVar_FrameRounding, MENU_FRAME_ROUNDING);
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ITEM_SPACING);
    ImGui::PushStyleVar(ImGuiStyleVar_GrabMinSize, SLIDER_GRAB_SIZE);
    ImGui::PushStyleVar(ImGuiStyleVar_GrabRounding, SLIDER_GRAB_ROUNDING);
    ImGui::PushStyleVar(ImGuiStyleVar_DisabledAlpha, RECEDED_ALPHA);
}

void pop_menu_window_style() {
    ImGui::PopStyleVar(MENU_VARS);
    ImGui::PopStyleColor(MENU_COLOURS);
}

void push_dialog_window_style() {
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, DIALOG_WINDOW_PADDING);
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, DIALOG_FRAME_PADDING);
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ITEM_SPACING);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, DIALOG_ROUNDING);
}

void pop_dialog_window_style() {
    ImGui::PopStyleVar(DIALOG_VARS);
}

}  // namespace veldra::overlay_style
