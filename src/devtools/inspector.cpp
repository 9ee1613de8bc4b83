#include "devtools/inspector.h"

#include <imgui.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "creatures/creature_pathfinding.h"
#include "creatures/eid.h"
#include "creatures/human.h"
#include "creatures/human_action.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "creatures/personality_sources.h"
#include "creatures/trial_world.h"
#include "devtools/debug_tools.h"
#include "devtools/debug_visualizer.h"
#include "devtools/panel_style.h"
#include "runtime/input.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/simulation_state.h"
#include "ui/trial_views.h"
#include "ui/world_drawing.h"
#include "world/terrain.h"

namespace veldra {

namespace {

std::string rounded(double value) {
    return number_to_string(std::round(value * 100) / 100);
}

std::string cell_text(const TerrainCell& cell) {
    return "(" + std::to_string(cell.cx) + ", " + std::to_string(cell.cy) + ")";
}

void add_path_lines(std::vector<std::string>& lines, const obj_creature& creature,
                    const TrialWorld& world) {
    const CreaturePath& path = creature_current_path(world.pathfinding, creature.id());
    const TerrainCell* goal = creature_current_goal(creature);
    if (path.empty()) {
        const TerrainCell* here =
            world.terrain ? world.terrain->cell_at_room(creature.x, creature.y) : nullptr;
        lines.push_back(!goal          ? "path: none"
                        : goal == here ? "path: at its goal " + cell_text(*goal)
                                       : "path: goal " + cell_text(*goal) + " cannot be reached");
        return;
    }
    std::string text =
        "path: " + std::to_string(path.size()) + " corner(s) to " + cell_text(*path.back()) + ":";
    for (const TerrainCell* cell : path)
        text += " " + cell_text(*cell);
    lines.push_back(std::move(text));
}

void add_human_lines(std::vector<std::string>& lines, const obj_human& human,
                     const TrialWorld& world) {
    lines.push_back("cooldowns: attack " + std::to_string(human.attack_cooldown_timer) +
                    ", decision " + std::to_string(human.action_choose_timer) + ", exchange " +
                    std::to_string(human.exchange_cooldown_timer) + " ticks");
    const HumanAction* action = human.get_current_action();
    lines.push_back("action: " + (action ? action->debug_string(world.runtime) : "none"));
    lines.push_back("memory (" + std::to_string(human.actions_in_memory.size()) + "):");
    for (const auto& remembered : human.actions_in_memory)
        lines.push_back("  " + remembered->debug_string(world.runtime));
    add_path_lines(lines, human, world);
    lines.push_back("ranges: sight " + rounded(human.sight_range) + ", exploration " +
                    rounded(human.exploration_range) + ", attack " + rounded(human.attack_range));
    lines.push_back("traits: " + traits_short_text(human.personality_traits));
    lines.push_back("action weights at this energy:");
    for (const HumanActionType* type : world.action_types.all)
        lines.push_back("  " + type->debug_name + " " + rounded(human.action_weights[type->index]));
    lines.push_back("traits and weights of a full human:");
    std::istringstream table(personality_traits_format_data(human.personality_traits,
                                                            world.configs(), world.action_types));
    for (std::string line; std::getline(table, line);)
        lines.push_back(line);
}

void add_monster_lines(std::vector<std::string>& lines, const obj_monster& monster,
                       const TrialWorld& world) {
    lines.push_back("cooldowns: attack " + std::to_string(monster.attack_cooldown_timer) +
                    ", new cell near food " + std::to_string(monster.target_food_cell_timer) +
                    ", wander " + std::to_string(monster.exploration_timer) + " ticks");
    lines.push_back("hunting: " + (monster.target_creature == NO_INSTANCE
                                       ? std::string("nobody")
                                       : EID(world.runtime.find(monster.target_creature), false)));
    lines.push_back("guarding: " + (monster.target_food == NO_INSTANCE
                                        ? std::string("nothing")
                                        : EID(world.runtime.find(monster.target_food), false)));
    add_path_lines(lines, monster, world);
    lines.push_back("ranges: sight " + rounded(monster.sight_range) + ", exploration " +
                    rounded(monster.exploration_range) + ", attack " +
                    rounded(monster.attack_range));
}

const char* kind_text(const obj_creature& creature) {
    if (creature.is_a<obj_human_player>())
        return "the player";
    if (creature.is_a<obj_human>())
        return "an AI human";
    if (creature.is_a<obj_monster>())
        return "a monster";
    return "a creature";
}

}  // namespace

std::vector<std::string> inspector_lines(const obj_creature& creature, const TrialWorld& world) {
    std::vector<std::string> lines;
    lines.push_back(EID(&creature, false) + ", " + kind_text(creature));
    std::string where = "position: (" + rounded(creature.x) + ", " + rounded(creature.y) + ")";
    if (world.terrain)
        if (const TerrainCell* cell = world.terrain->cell_at_room(creature.x, creature.y))
            where += ", cell " + cell_text(*cell);
    lines.push_back(std::move(where));
    lines.push_back("energy: " + rounded(creature.energy) + " of " + rounded(creature.energy_max));
    if (const auto* human = dynamic_cast<const obj_human*>(&creature))
        add_human_lines(lines, *human, world);
    else if (const auto* monster = dynamic_cast<const obj_monster*>(&creature))
        add_monster_lines(lines, *monster, world);
    return lines;
}

InstanceId creature_under_pointer(Runtime& runtime, const Camera& camera, double x, double y) {
    const ScreenPoint at = camera.screen_to_world(x, y);
    InstanceId nearest = NO_INSTANCE;
    double best = INSPECTOR_PICK_RADIUS;
    runtime.for_each<obj_creature>([&](const obj_creature& creature) {
        const double distance = std::hypot(creature.x - at.x, creature.y - BODY_LIFT - at.y);
        if (distance <= best) {
            best = distance;
            nearest = creature.id();
        }
    });
    return nearest;
}

bool obj_inspector::showing() const {
    return !lines_.empty() && debug_panels_showing(runtime());
}

void obj_inspector::select(InstanceId creature) {
    selected_ = creature;
    follow = false;
    lines_.clear();
    update();
}

void obj_inspector::on_step_begin() {
    auto* views = runtime().instance_find<obj_trial_views>(0);
    if (!debug_panels_showing(runtime()) || !views) {
        if (views)
            views->followed = NO_INSTANCE;
        return;
    }
    const InputFrame& input = runtime().services().input->frame();
    // A click on a panel is the panel's.
    const bool over_panel = ImGui::GetCurrentContext() && ImGui::GetIO().WantCaptureMouse;
    if (input.pressed(MouseButton::right) && !over_panel && input.mouse_y >= Camera::VIEW_TOP &&
        !views->world_hidden()) {
        const InstanceId picked =
            creature_under_pointer(runtime(), views->camera, input.mouse_x, input.mouse_y);
        if (picked != NO_INSTANCE)
            select(picked);
    }
    update();
}

void obj_inspector::update() {
    auto* views = runtime().instance_find<obj_trial_views>(0);
    const obj_debug_tools* tools = find_debug_tools(runtime());
    if (selected_ != NO_INSTANCE && tools) {
        if (const auto* creature = runtime().find_as<obj_creature>(selected_)) {
            lines_ = inspector_lines(*creature, tools->context.sim.world);
        } else {
            // The first line names it; what it was is all that is left to say.
            const std::string name = lines_.empty() ? "The selection" : lines_.front();
            lines_ = {name.substr(0, name.find(',')) + " died.",
                      "Right-click a creature to inspect it."};
            selected_ = NO_INSTANCE;
            follow = false;
        }
    }
    if (views)
        views->followed = follow ? selected_ : NO_INSTANCE;
}

void obj_inspector::on_step() {
    if (!showing() || !overlay_frame_open())
        return;
    ControlRecord record;
    panel_style::begin_place(panel_style::INSPECTOR);
    panel_style::push_style();
    // Debug strings and the tables are wider than the panel: they scroll rather than wrap.
    if (ImGui::Begin(INSPECTOR_HEADING, nullptr,
                     panel_style::FIXED_WINDOW | ImGuiWindowFlags_HorizontalScrollbar)) {
        record.texts.emplace_back(INSPECTOR_HEADING);
        if (selected_ != NO_INSTANCE) {
            if (ImGui::Checkbox(INSPECTOR_FOLLOW, &follow))
                update();
            remember_item(record, INSPECTOR_FOLLOW);
            ImGui::SameLine();
        }
        if (ImGui::Button(INSPECTOR_CLOSE)) {
            selected_ = NO_INSTANCE;
            follow = false;
            lines_.clear();
            update();
        }
        remember_item(record, INSPECTOR_CLOSE);
        ImGui::Separator();
        for (const std::string& line : lines_) {
            ImGui::TextUnformatted(line.c_str());
            record.texts.push_back(line);
        }
    }
    ImGui::End();
    panel_style::pop_style();
    controls_ = std::move(record);
}

}  // namespace veldra
