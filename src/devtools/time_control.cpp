#include "devtools/time_control.h"

#include <imgui.h>

#include <array>

#include "devtools/debug_commands.h"
#include "devtools/debug_tools.h"
#include "devtools/panel_style.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"

namespace veldra {

namespace {

struct SpeedButton {
    const char* label;
    const char* command;
    double speed;
};
constexpr std::array<SpeedButton, 7> SPEED_BUTTONS{{{"x0.25", "speed 0.25", 0.25},
                                                    {"x0.5", "speed 0.5", 0.5},
                                                    {"x1", "speed 1", 1},
                                                    {"x2", "speed 2", 2},
                                                    {"x4", "speed 4", 4},
                                                    {"x8", "speed 8", 8},
                                                    {"x16", "speed 16", 16}}};

}  // namespace

std::string time_control_state_text(const obj_trial& trial) {
    if (trial.game_speed < 0)
        return "Fast-forward";
    if (trial.paused())
        return "Paused";
    return "Speed x" + number_to_string(trial.game_speed);
}

bool obj_debug_time_control::showing() const {
    return debug_panels_showing(runtime());
}

void obj_debug_time_control::on_step() {
    if (!showing() || !overlay_frame_open())
        return;
    SimulationState& sim = find_debug_tools(runtime())->context.sim;
    const obj_trial& trial = *sim.current_trial();
    const char* command = nullptr;
    ControlRecord record;
    const auto button = [&](const char* label, const char* line, bool chosen = false) {
        if (chosen)
            ImGui::PushStyleColor(ImGuiCol_Button, ImGui::GetStyleColorVec4(ImGuiCol_ButtonActive));
        if (ImGui::SmallButton(label))
            command = line;
        if (chosen)
            ImGui::PopStyleColor();
        remember_item(record, label);
    };
    panel_style::begin_place(panel_style::TIME_CONTROL);
    panel_style::push_style();
    if (ImGui::Begin(TIME_CONTROL_HEADING, nullptr,
                     panel_style::FIXED_WINDOW | ImGuiWindowFlags_AlwaysAutoResize)) {
        const std::string state = time_control_state_text(trial);
        const std::string tick = "Tick " + std::to_string(trial.ticker.spent_ticks) + " of " +
                                 std::to_string(trial.max_ticks);
        ImGui::TextUnformatted(state.c_str());
        ImGui::SameLine();
        ImGui::TextDisabled("%s", tick.c_str());
        record.texts = {TIME_CONTROL_HEADING, state, tick};
        button(trial.paused() ? "Resume" : "Pause", trial.paused() ? "resume" : "pause");
        ImGui::SameLine();
        button("Step tick", "step");
        ImGui::SameLine();
        button("Step decision", "step_decision");
        ImGui::SameLine();
        button("Fast-forward", "fast_forward");
        for (const SpeedButton& speed : SPEED_BUTTONS) {
            if (&speed != &SPEED_BUTTONS.front())
                ImGui::SameLine();
            button(speed.label, speed.command, trial.game_speed == speed.speed);
        }
    }
    ImGui::End();
    panel_style::pop_style();
    controls_ = std::move(record);
    // After the panel is drawn: a command may end the trial.
    if (command)
        run_debug_command(sim, command);
}

}  // namespace veldra
