#include "devtools/debug_terminal.h"

#include <imgui.h>
#include <imgui_stdlib.h>

#include "config/debug_settings.h"
#include "devtools/debug_commands.h"
#include "devtools/debug_tools.h"
#include "devtools/panel_style.h"
#include "devtools/terminal_tap.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/imgui_adapter.h"
#include "ui/styled_text.h"

namespace veldra {

namespace {

constexpr float NO_WRAP = 1e6f;
constexpr const char* COMMAND_LINE_HINT = "command (help lists them)";

struct LevelToggle {
    LogLevel level;
    const char* label;
};
constexpr LevelToggle LEVEL_TOGGLES[] = {
    {LogLevel::info, "Info"}, {LogLevel::warning, "Warnings"}, {LogLevel::error, "Errors"}};

// Works on a copy of the field's text: the field's buffer is `input`'s own, which must not
// change under it.
int on_command_line_key(ImGuiInputTextCallbackData* data) {
    auto& terminal = *static_cast<obj_debug_terminal*>(data->UserData);
    const std::string line(data->Buf, static_cast<std::size_t>(data->BufTextLen));
    std::string edited;
    if (data->EventFlag == ImGuiInputTextFlags_CallbackCompletion)
        edited = terminal.completed(line);
    else if (data->EventFlag == ImGuiInputTextFlags_CallbackHistory)
        edited = data->EventKey == ImGuiKey_UpArrow ? terminal.history_older(line)
                                                    : terminal.history_newer(line);
    else
        return 0;
    data->DeleteChars(0, data->BufTextLen);
    data->InsertChars(0, edited.c_str());
    return 0;
}

}  // namespace

void obj_debug_terminal::on_create() {
    tap_ = &TerminalTap::install(runtime().services());
}

void obj_debug_terminal::on_clean_up() {
    if (tap_)
        TerminalTap::uninstall(runtime().services(), *tap_);
    tap_ = nullptr;
}

TerminalLog& obj_debug_terminal::log() {
    return tap_->log;
}

bool obj_debug_terminal::showing() const {
    const obj_debug_tools* tools = find_debug_tools(runtime());
    return tools && tools->context.debugs.show_log && debug_panels_showing(runtime());
}

void obj_debug_terminal::enter(const std::string& line) {
    history.add(line);
    if (line.find_first_not_of(' ') == std::string::npos)
        return;
    log().add(LogLevel::info, "[#888888]> " + line + "[/c]");
    obj_debug_tools* tools = find_debug_tools(runtime());
    if (!tools)
        return;
    for (const std::string& out : run_debug_command(tools->context.sim, line))
        log().add(out.starts_with(DEBUG_ERROR_COLOR) ? LogLevel::error : LogLevel::info, out);
}

std::string obj_debug_terminal::completed(const std::string& line) {
    Completion completion = complete_command_name(line, debug_command_names_starting_with(""));
    if (completion.candidates.size() > 1) {
        std::string names;
        for (const std::string& name : completion.candidates)
            names += (names.empty() ? "" : "  ") + name;
        log().add(LogLevel::info, names);
    }
    return std::move(completion.line);
}

std::string obj_debug_terminal::history_older(const std::string& line) {
    return history.older().value_or(line);
}

std::string obj_debug_terminal::history_newer(const std::string& line) {
    return history.newer().value_or(line);
}

void obj_debug_terminal::draw_filter() {
    for (const LevelToggle& toggle : LEVEL_TOGGLES) {
        bool on = log().shows(toggle.level);
        if (ImGui::Checkbox(toggle.label, &on))
            log().set_shows(toggle.level, on);
        remember_item(controls_, toggle.label);
        ImGui::SameLine();
    }
    ImGui::TextDisabled("%zu lines", log().lines().size());
}

void obj_debug_terminal::draw_lines() {
    const float command_line_height = ImGui::GetFrameHeightWithSpacing();
    ImGui::BeginChild("##lines", ImVec2(0, -command_line_height), false,
                      ImGuiWindowFlags_HorizontalScrollbar);
    // Every row one line high, an empty one too: the clipper places rows by that height.
    const float row_height = ImGui::GetTextLineHeightWithSpacing();
    // At the bottom before new lines came: stay there. Scrolled up: stay put. Within a row of
    // the bottom counts as there: a horizontal scrollbar coming or going moves the bottom.
    const bool follow = ImGui::GetScrollY() >= ImGui::GetScrollMaxY() - row_height;
    // Only the rows in view are laid out: a full scrollback laid out every frame would cost
    // the frame more than everything else on screen.
    shown_rows_.clear();
    for (const TerminalLine& line : log().lines())
        if (log().shows(line.level))
            shown_rows_.push_back(&line);
    ImGuiListClipper clipper;
    clipper.Begin(static_cast<int>(shown_rows_.size()), row_height);
    drawn_rows_ = {};
    while (clipper.Step()) {
        for (int row = clipper.DisplayStart; row < clipper.DisplayEnd; ++row) {
            const float top = ImGui::GetCursorPosY();
            styled_text(shown_rows_[static_cast<std::size_t>(row)]->text, NO_WRAP);
            ImGui::SetCursorPosY(top + row_height);
        }
        if (clipper.DisplayEnd > clipper.DisplayStart)
            drawn_rows_ = {static_cast<std::size_t>(clipper.DisplayStart),
                           static_cast<std::size_t>(clipper.DisplayEnd)};
    }
    if (follow && log().added() != lines_seen_)
        ImGui::SetScrollHereY(1.0f);
    lines_seen_ = log().added();
    ImGui::EndChild();
}

void obj_debug_terminal::draw_command_line() {
    ImGui::SetNextItemWidth(-1);
    if (focus_input_) {
        ImGui::SetKeyboardFocusHere();
        focus_input_ = false;
    }
    const ImGuiInputTextFlags flags = ImGuiInputTextFlags_EnterReturnsTrue |
                                      ImGuiInputTextFlags_CallbackCompletion |
                                      ImGuiInputTextFlags_CallbackHistory;
    if (ImGui::InputTextWithHint("##command", COMMAND_LINE_HINT, &input, flags, on_command_line_key,
                                 this)) {
        const std::string line = std::move(input);
        input.clear();
        enter(line);
        focus_input_ = true;  // Enter lets go of the field; the next command follows
    }
    // Up and Down belong to the history: keyboard navigation must not also leave the field.
    if (ImGui::IsItemActive() && (imgui_adapter::key_pressed(ImGuiKey_UpArrow) ||
                                  imgui_adapter::key_pressed(ImGuiKey_DownArrow)))
        imgui_adapter::cancel_keyboard_move();
    remember_item(controls_, "##command");
}

void obj_debug_terminal::on_draw_gui_end() {
    if (!showing() || !overlay_frame_open()) {
        was_showing_ = false;
        return;
    }
    // Appearing, it takes the keyboard so a command can be typed at once; Escape gives the keys
    // back to the game.
    if (!was_showing_)
        focus_input_ = true;
    was_showing_ = true;
    controls_.texts.clear();
    controls_.controls.clear();
    panel_style::begin_place(panel_style::TERMINAL);
    panel_style::push_style();
    if (ImGui::Begin(TERMINAL_HEADING, nullptr, panel_style::FIXED_WINDOW)) {
        controls_.texts.emplace_back(TERMINAL_HEADING);
        draw_filter();
        draw_lines();
        draw_command_line();
    }
    ImGui::End();
    panel_style::pop_style();
}

}  // namespace veldra
