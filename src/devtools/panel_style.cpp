#include "devtools/panel_style.h"

namespace veldra::panel_style {

void begin_place(const PanelPlace& place) {
    ImGui::SetNextWindowPos(ImVec2(place.x, place.y), ImGuiCond_Always);
    if (place.height > 0)
        ImGui::SetNextWindowSize(ImVec2(place.width, place.height), ImGuiCond_Always);
    else
        ImGui::SetNextWindowSizeConstraints(ImVec2(place.width, 0), ImVec2(place.width, 900));
}

void push_style() {
    ImGui::PushStyleColor(ImGuiCol_WindowBg, BACKGROUND);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, WINDOW_PADDING);
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ITEM_SPACING);
}

void pop_style() {
    ImGui::PopStyleVar(2);
    ImGui::PopStyleColor();
}

}  // namespace veldra::panel_style
