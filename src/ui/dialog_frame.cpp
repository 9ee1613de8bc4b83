#include "ui/dialog_frame.h"

#include "ui/styled_text.h"

#include <imgui.h>

#include <algorithm>

#include "runtime/log.h"
#include "ui/imgui_adapter.h"
#include "ui/overlay_style.h"

namespace veldra {

namespace {

// The one place a dialog's text meets the screen. The game's styled text can replace this body
// (colours, centring) without touching the dialogs; until then the markup is dropped.
void draw_markup_text(std::string_view markup) {
    styled_text(markup, 0);
}

// Over everything but the dialog: it dims the screen and takes the clicks beside the dialog, so
// neither the game nor a menu below reacts to them.
void draw_backdrop() {
    const ImGuiIO& io = ImGui::GetIO();
    ImGui::SetNextWindowPos(ImVec2(0, 0));
    ImGui::SetNextWindowSize(io.DisplaySize);
    ImGui::PushStyleColor(ImGuiCol_WindowBg, overlay_style::DIALOG_DIM_BEHIND);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, 0);
    ImGui::Begin("##dialog_backdrop", nullptr,
                 ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                     ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoNav |
                     ImGuiWindowFlags_NoBringToFrontOnFocus | ImGuiWindowFlags_NoFocusOnAppearing);
    imgui_adapter::bring_current_window_to_front();
    ImGui::End();
    ImGui::PopStyleVar();
    ImGui::PopStyleColor();
}

}  // namespace

void begin_dialog_window(const DialogFrame& frame, float width, float height) {
    draw_backdrop();
    const ImGuiIO& io = ImGui::GetIO();
    overlay_style::push_dialog_window_style();
    ImGui::SetNextWindowPos(ImVec2(io.DisplaySize.x / 2, io.DisplaySize.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    ImGuiWindowFlags flags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize |
                             ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoCollapse |
                             ImGuiWindowFlags_NoSavedSettings;
    if (height > 0) {
        ImGui::SetNextWindowSize(ImVec2(width, height));
    } else {
        ImGui::SetNextWindowSizeConstraints(ImVec2(width, 0),
                                            ImVec2(width, io.DisplaySize.y * 0.9f));
        flags |= ImGuiWindowFlags_AlwaysAutoResize;
    }
    ImGui::Begin(frame.window_id.c_str(), nullptr, flags);
    // Menus bring themselves forward too; the dialog is drawn last in the frame, so it wins.
    imgui_adapter::bring_current_window_to_front();
    if (!ImGui::IsWindowFocused(ImGuiFocusedFlags_RootAndChildWindows))
        ImGui::SetWindowFocus();
    imgui_adapter::capture_keyboard();
}

void end_dialog_window() {
    ImGui::End();
    overlay_style::pop_dialog_window_style();
}

void dialog_text(DialogFrame& frame, std::string_view markup) {
    frame.texts.push_back(remove_text_tags(markup));
    draw_markup_text(markup);
}

void dialog_warning(DialogFrame& frame, std::string_view markup) {
    ImGui::PushStyleColor(ImGuiCol_Text, overlay_style::WARNING_TEXT);
    dialog_text(frame, markup);
    ImGui::PopStyleColor();
}

int dialog_buttons(DialogFrame& frame, const std::vector<std::string>& labels) {
    const ImGuiStyle& style = ImGui::GetStyle();
    const auto width_of = [&](const std::string& label) {
        return std::max(overlay_style::DIALOG_BUTTON_MIN_WIDTH,
                        ImGui::CalcTextSize(label.c_str()).x + 2 * style.FramePadding.x);
    };
    float total = 0;
    for (const auto& label : labels)
        total += width_of(label) + style.ItemSpacing.x;
    total -= style.ItemSpacing.x;
    const float right = imgui_adapter::content_right();
    ImGui::SetCursorPosX(std::max(ImGui::GetCursorPosX(), right - total));
    int pressed = -1;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (i > 0)
            ImGui::SameLine();
        if (overlay_button(labels[i], width_of(labels[i])))
            pressed = static_cast<int>(i);
        remember_item(frame, labels[i]);
    }
    return pressed;
}

}  // namespace veldra
