#include "devtools/debug_menu.h"

#include <imgui.h>

#include <array>

#include "devtools/debug_tools.h"
#include "devtools/panel_style.h"
#include "runtime/runtime.h"

namespace veldra {

namespace {

constexpr std::array<DebugSwitch, 10> SWITCHES{{
    {"show_pathfinding", "Pathfinding", &DebugSettings::show_pathfinding},
    {"show_sight_ranges", "Sight ranges", &DebugSettings::show_sight_ranges},
    {"show_exploration_ranges", "Exploration ranges", &DebugSettings::show_exploration_ranges},
    {"show_attack_ranges", "Attack ranges", &DebugSettings::show_attack_ranges},
    {"show_player_actions", "Player actions", &DebugSettings::show_player_actions},
    {"show_human_actions", "Human actions", &DebugSettings::show_human_actions},
    {"show_energies", "Energies", &DebugSettings::show_energies},
    {"show_trait_data", "Trait data", &DebugSettings::show_trait_data},
    {"show_ids", "show_ids", &DebugSettings::show_ids},
    {"show_log", "show_log", &DebugSettings::show_log},
}};

}  // namespace

std::span<const DebugSwitch> debug_switches() {
    return SWITCHES;
}

const DebugSwitch* find_debug_switch(std::string_view field_or_label) {
    for (const DebugSwitch& s : SWITCHES)
        if (field_or_label == s.field || field_or_label == s.label)
            return &s;
    return nullptr;
}

void set_debug_switch(DebugSettings& settings, Files& files, const DebugSwitch& which, bool on) {
    settings.*which.member = on;
    save_active_debug_settings(files, settings);
}

bool obj_debug_menu::showing() const {
    return debug_panels_showing(runtime());
}

void obj_debug_menu::on_step() {
    if (!showing() || !overlay_frame_open())
        return;
    obj_debug_tools& tools = *find_debug_tools(runtime());
    ControlRecord record;
    panel_style::begin_place(panel_style::DEBUG_MENU);
    panel_style::push_style();
    if (ImGui::Begin(DEBUG_MENU_HEADING, nullptr,
                     panel_style::FIXED_WINDOW | ImGuiWindowFlags_AlwaysAutoResize)) {
        record.texts.emplace_back(DEBUG_MENU_HEADING);
        for (const DebugSwitch& s : SWITCHES) {
            bool on = tools.context.debugs.*s.member;
            if (ImGui::Checkbox(s.label, &on))
                set_debug_switch(tools.context.debugs, tools.context.files, s, on);
            remember_item(record, s.label);
        }
        ImGui::Separator();
        ImGui::Checkbox(DEBUG_MENU_WORKBENCH, &tools.workbench_open);
        remember_item(record, DEBUG_MENU_WORKBENCH);
        ImGui::TextDisabled("%s", DEBUG_MENU_HINT);
        record.texts.emplace_back(DEBUG_MENU_HINT);
    }
    ImGui::End();
    panel_style::pop_style();
    controls_ = std::move(record);
}

}  // namespace veldra
