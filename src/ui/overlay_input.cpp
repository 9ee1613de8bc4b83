#include "ui/overlay_input.h"

#include "ui/imgui_adapter.h"

namespace veldra {

bool OverlayKeys::pressed(ImGuiKey key) const {
    return live_ && imgui_adapter::key_pressed(key);
}

bool OverlayKeys::pressed_or_repeated(ImGuiKey key) const {
    return live_ && imgui_adapter::key_pressed_or_repeated(key);
}

bool OverlayKeys::activates_last_item() const {
    return live_ && ImGui::IsItemFocused() && imgui_adapter::keyboard_highlight_shown() &&
           imgui_adapter::key_pressed(ImGuiKey_Enter);
}

bool OverlayKeys::moves_to_next_field() const {
    return live_ && !ImGui::IsAnyItemActive() && !ImGui::GetIO().KeyShift &&
           imgui_adapter::key_pressed_or_repeated(ImGuiKey_Tab);
}

bool overlay_button(const std::string& label, float width, const OverlayKeys* keys) {
    const bool clicked = ImGui::Button(label.c_str(), ImVec2(width, 0));
    return clicked || (keys && keys->activates_last_item());
}

}  // namespace veldra
