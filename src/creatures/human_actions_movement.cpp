// Actions that move a human about: going to food and eating it, going up to a creature, keeping
// away from one, and exploring.

#include <algorithm>

#include <fmt/format.h>

#include "creatures/creature_pathfinding.h"
#include "creatures/eid.h"
#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_action.h"
#include "creatures/human_trial.h"
#include "creatures/monster.h"
#include "runtime/runtime.h"
#include "util/geometry.h"

namespace veldra {

namespace {

// Food is eaten from closer than half a cell; exactly half a cell is not yet close enough.
constexpr double EATING_DISTANCE = TERRAIN_CELL_SIZE / 2.0;
// Ticks between two plans of a flight cell: once a second, however the pursuer moves.
constexpr Ticks FLIGHT_REPLAN_TICKS = 60;

bool in_sight(const obj_human& human, const Instance& target) {
    return point_distance_compare(human.x, human.y, target.x, target.y, human.sight_range) <= 0;
}

void eat(obj_human& human, const obj_food& food) {
    if (const auto& log = human.world().log_interactive_event)
        log(fmt::format("{} ate {}.", EID(&human, false), EID(&food, false)));
    human.runtime().instance_destroy(food.id());
    human.energy = std::min(human.energy_max,
                            human.energy + human.world().configs().human_energy_gain_eat_food);
}

// Walks toward the free cell beside the target creature's cell. An approach is over once the
// human is close enough to strike or trade (so the next remembered action can take over), or
// when the target is gone or out of sight.
bool approach_creature(obj_human& human, InstanceId target_id) {
    const obj_creature* target = human.runtime().find_as<obj_creature>(target_id);
    if (!target || !in_sight(human, *target) || creature_is_within_attack_range(human, *target))
        return false;
    const TerrainCell* cell = creature_find_pathfinding_adjacent_target_cell(
        human, detail::room_to_cell(target->x), detail::room_to_cell(target->y));
    creature_approach(human, cell, human.get_movement_speed());
    return true;
}

}  // namespace

HA_ApproachFood::HA_ApproachFood(const obj_human& human, InstanceId target_food)
    : TargetedHumanAction(*human.world().action_types.HAT_approach_food, target_food,
                          "target_food") {}

bool HA_ApproachFood::tick(obj_human& human, Rng&) {
    const obj_food* food = human.runtime().find_as<obj_food>(target);
    if (!food)
        return false;
    creature_approach(human, human.world().current_terrain().cell_at_room(food->x, food->y),
                      human.get_movement_speed());
    if (point_distance_compare(human.x, human.y, food->x, food->y, EATING_DISTANCE) >= 0)
        return true;
    eat(human, *food);
    return false;
}

HA_ApproachMonster::HA_ApproachMonster(const obj_human& human, InstanceId target_monster)
    : TargetedHumanAction(*human.world().action_types.HAT_approach_monster, target_monster,
                          "target_monster") {}

bool HA_ApproachMonster::tick(obj_human& human, Rng&) {
    return approach_creature(human, target);
}

HA_ApproachHuman::HA_ApproachHuman(const obj_human& human, InstanceId target_human)
    : TargetedHumanAction(*human.world().action_types.HAT_approach_human, target_human,
                          "target_human") {}

bool HA_ApproachHuman::tick(obj_human& human, Rng&) {
    return approach_creature(human, target);
}

// The flight cell is planned when the action first runs and then at most once per
// FLIGHT_REPLAN_TICKS; while there is none (walled in, or the pursuer blocks every way out) it
// is looked for again every tick, so a gap that opens is taken at once.
bool detail::AvoidAction::tick(obj_human& human, Rng&) {
    const Instance* pursuer = human.runtime().find(target);
    if (!pursuer || !in_sight(human, *pursuer))
        return false;
    const Ticks now = human.world().spent_ticks;
    if (!target_cell || !tick_at_last_target_cell_find ||
        now - *tick_at_last_target_cell_find >= FLIGHT_REPLAN_TICKS) {
        target_cell = creature_find_pathfinding_avoiding_target_cell(human, *pursuer);
        tick_at_last_target_cell_find = now;
    }
    creature_approach(human, target_cell, human.get_movement_speed());
    return true;
}

HA_AvoidMonster::HA_AvoidMonster(const obj_human& human, InstanceId target_monster)
    : AvoidAction(*human.world().action_types.HAT_avoid_monster, target_monster, "target_monster") {
}

HA_AvoidHuman::HA_AvoidHuman(const obj_human& human, InstanceId target_human)
    : AvoidAction(*human.world().action_types.HAT_avoid_human, target_human, "target_human") {}

bool HA_Explore::tick(obj_human& human, Rng&) {
    creature_approach(human, target_cell, human.get_movement_speed());
    return human.world().current_terrain().cell_at_room(human.x, human.y) != target_cell;
}

}  // namespace veldra
