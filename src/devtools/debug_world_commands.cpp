// The commands that change or show the creatures of the running trial.

#include <cmath>

#include "creatures/eid.h"
#include "creatures/entity.h"
#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_action.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "devtools/debug_command_handlers.h"
#include "devtools/inspector.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "ui/player_controller.h"
#include "ui/trial_views.h"

namespace veldra {

namespace {

std::string cell_text(const TerrainCell& cell) {
    return "cell (" + std::to_string(cell.cx) + ", " + std::to_string(cell.cy) + ")";
}

// The cell the player's mouse points at, when the trial is shown and the mouse is on the world.
const TerrainCell* cell_under_mouse(SimulationState& sim, const obj_trial& trial) {
    const auto* views = sim.runtime.find_as<obj_trial_views>(trial.hud);
    if (!views)
        return nullptr;
    const PlayerController& mouse = views->controller;
    if (!in_world_viewport(mouse.mouse_x, mouse.mouse_y))
        return nullptr;
    const ScreenPoint at = views->camera.screen_to_world(mouse.mouse_x, mouse.mouse_y);
    return trial.terrain.cell_at_room(at.x, at.y);
}

// The cell named by two arguments, or the reason there is none. Nothing when they are not
// numbers (wrong arguments).
std::optional<const TerrainCell*> cell_argument(const obj_trial& trial, const std::string& x,
                                                const std::string& y) {
    const auto cx = parse_integer_argument(x);
    const auto cy = parse_integer_argument(y);
    if (!cx || !cy)
        return std::nullopt;
    if (*cx < 0 || *cy < 0 || *cx >= trial.terrain.width || *cy >= trial.terrain.height)
        return static_cast<const TerrainCell*>(nullptr);
    return trial.terrain.cell_at(static_cast<int>(*cx), static_cast<int>(*cy));
}

bool holds_creature(Runtime& runtime, const obj_trial& trial, const TerrainCell& cell) {
    bool found = false;
    runtime.for_each<obj_entity>([&](obj_entity& entity) {
        if (trial.terrain.cell_at_room(entity.x, entity.y) == &cell)
            found = true;
    });
    return found;
}

obj_trial* trial_or_error(SimulationState& sim, std::vector<std::string>& error) {
    obj_trial* trial = sim.current_trial();
    if (!trial || !trial->level)
        error = error_output("No trial is running.");
    return trial && trial->level ? trial : nullptr;
}

template <class T>
T* newest(Runtime& runtime) {
    const std::size_t count = runtime.instance_number<T>();
    return count ? runtime.instance_find<T>(count - 1) : nullptr;
}

std::string traits_text(const PersonalityTraits& t) {
    return "O " + number_to_string(t.openness) + ", C " + number_to_string(t.conscientiousness) +
           ", E " + number_to_string(t.extraversion) + ", A " + number_to_string(t.agreeableness) +
           ", N " + number_to_string(t.neuroticism);
}

}  // namespace

DebugCommandOutput command_spawn(SimulationState& sim, DebugCommandArgs args) {
    if ((args.size() != 1 && args.size() != 3) || (args[0] != "monster" && args[0] != "food"))
        return std::nullopt;
    std::vector<std::string> error;
    obj_trial* trial = trial_or_error(sim, error);
    if (!trial)
        return error;
    const TerrainCell* cell = nullptr;
    if (args.size() == 3) {
        const auto named = cell_argument(*trial, args[1], args[2]);
        if (!named)
            return std::nullopt;
        cell = *named;
        if (!cell)
            return error_output("That cell is outside the level.");
    } else {
        cell = cell_under_mouse(sim, *trial);
        if (!cell)
            return error_output("The mouse is not over the level; give a cell: spawn " + args[0] +
                                " X Y");
    }
    if (!cell->is_traversable)
        return error_output("Nothing can stand in " + cell_text(*cell) + ".");
    const Instance* made = nullptr;
    if (args[0] == "monster") {
        sim.spawn_hooks.spawn_monster(*cell);
        made = newest<obj_monster>(sim.runtime);
    } else {
        sim.spawn_hooks.spawn_food(*cell);
        made = newest<obj_food>(sim.runtime);
    }
    return std::vector<std::string>{"Spawned " + EID(made, true) + " in " + cell_text(*cell) + "."};
}

DebugCommandOutput command_kill(SimulationState& sim, DebugCommandArgs args) {
    const auto id = parse_id_arguments(args);
    if (!id)
        return std::nullopt;
    auto* entity = sim.runtime.find_as<obj_entity>(static_cast<InstanceId>(*id));
    if (!entity)
        return error_output("No creature or food has id " + std::to_string(*id) + ".");
    const std::string name = EID(entity, true);
    sim.runtime.instance_destroy(entity->id());
    return std::vector<std::string>{"Killed " + name + "."};
}

DebugCommandOutput command_inspect(SimulationState& sim, DebugCommandArgs args) {
    const bool follow = !args.empty() && args.back() == "follow";
    const auto id = parse_id_arguments(follow ? args.first(args.size() - 1) : args);
    if (!id)
        return std::nullopt;
    auto* creature = sim.runtime.find_as<obj_creature>(static_cast<InstanceId>(*id));
    if (!creature)
        return error_output("No creature has id " + std::to_string(*id) + ".");
    auto* inspector = sim.runtime.instance_find<obj_inspector>(0);
    if (!inspector)
        return error_output("The inspector is part of the developer tools of a window.");
    inspector->select(creature->id());
    inspector->follow = follow;
    return std::vector<std::string>{"Inspecting " + EID(creature, true) +
                                    (follow ? ", followed by the camera." : ".")};
}

DebugCommandOutput command_teleport(SimulationState& sim, DebugCommandArgs args) {
    if (args.size() != 2)
        return std::nullopt;
    std::vector<std::string> error;
    obj_trial* trial = trial_or_error(sim, error);
    if (!trial)
        return error;
    const auto named = cell_argument(*trial, args[0], args[1]);
    if (!named)
        return std::nullopt;
    const TerrainCell* cell = *named;
    if (!cell)
        return error_output("That cell is outside the level.");
    auto* player = sim.runtime.instance_find<obj_human_player>(0);
    if (!player)
        return error_output("The player is gone.");
    if (!cell->is_traversable || holds_creature(sim.runtime, *trial, *cell))
        return error_output(cell_text(*cell) + " is not free.");
    player->x = cell->room_rect.get_center_x();
    player->y = cell->room_rect.get_center_y();
    // A jump, not a walk: the views must not see a step from the old place.
    player->x_on_previous_tick = player->x_on_current_tick = player->x;
    player->y_on_previous_tick = player->y_on_current_tick = player->y;
    return std::vector<std::string>{"Teleported " + EID(player, true) + " to " + cell_text(*cell) +
                                    "."};
}

DebugCommandOutput command_print(SimulationState& sim, DebugCommandArgs args) {
    const auto id = parse_id_arguments(args);
    if (!id)
        return std::nullopt;
    const auto* entity = sim.runtime.find_as<obj_entity>(static_cast<InstanceId>(*id));
    if (!entity)
        return error_output("No creature or food has id " + std::to_string(*id) + ".");
    std::vector<std::string> lines{EID(entity, true) + " at (" + number_to_string(entity->x) +
                                   ", " + number_to_string(entity->y) + ")"};
    if (const obj_trial* trial = sim.current_trial())
        if (const TerrainCell* cell = trial->terrain.cell_at_room(entity->x, entity->y))
            lines.push_back("  " + cell_text(*cell));
    if (const auto* creature = dynamic_cast<const obj_creature*>(entity))
        lines.push_back("  energy " + number_to_string(creature->energy) + " / " +
                        number_to_string(creature->energy_max));
    if (const auto* human = dynamic_cast<const obj_human*>(entity)) {
        const HumanAction* action = human->get_current_action();
        lines.push_back("  action " +
                        (action ? action->debug_string(sim.runtime) : std::string("none")));
        lines.push_back("  traits " + traits_text(human->personality_traits));
        lines.push_back("  next decision in " + std::to_string(human->action_choose_timer) +
                        " ticks");
    }
    return lines;
}

}  // namespace veldra
