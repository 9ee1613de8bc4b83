// obj_monster: set-up from the configuration and the hunt, guard and wander tick.

#include "creatures/monster.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "runtime/runtime.h"
#include "util/geometry.h"
#include "world/terrain.h"

namespace veldra {

namespace {

// Ticks between two cell picks near food or when wandering: 2 to 4 seconds.
constexpr Ticks CELL_PICK_MIN_TICKS = 120;
constexpr Ticks CELL_PICK_MAX_TICKS = 240;

// The traversable cells of the square of `half_size` cells each way around (x, y), clamped to
// the terrain and row by row; with a range, only cells whose centre is within it. A random one
// from the trial's generator, or nullptr (and no draw) when there is none.
const TerrainCell* pick_cell_around(TrialWorld& world, double x, double y, int half_size,
                                    double range) {
    const Terrain& terrain = world.current_terrain();
    const int cx = terrain_room_to_cell(x);
    const int cy = terrain_room_to_cell(y);
    std::vector<const TerrainCell*>& candidates = world.scratch.monster_cells;
    candidates.clear();
    for (int ty = std::max(0, cy - half_size); ty <= std::min(terrain.height - 1, cy + half_size);
         ++ty) {
        for (int tx = std::max(0, cx - half_size);
             tx <= std::min(terrain.width - 1, cx + half_size); ++tx) {
            const TerrainCell& cell = *terrain.cell_at(tx, ty);
            if (!cell.is_traversable)
                continue;
            if (range >= 0 && point_distance_compare(x, y, cell.room_rect.get_center_x(),
                                                     cell.room_rect.get_center_y(), range) > 0)
                continue;
            candidates.push_back(&cell);
        }
    }
    if (candidates.empty())
        return nullptr;
    return world.trial_rng().rng_array_get_random(candidates);
}

// Counts a cell-pick timer down; true when it ran out, after resetting it.
bool cell_pick_due(TrialWorld& world, Ticks& timer) {
    timer -= 1;
    if (timer > 0)
        return false;
    timer = world.trial_rng().rng_irandom_range(CELL_PICK_MIN_TICKS, CELL_PICK_MAX_TICKS);
    return true;
}

}  // namespace

void obj_monster::on_create() {
    obj_creature::on_create();
    const GameConfigurations& c = world().configs();
    _creature_initialize(c.monster_energy_max, c.monster_starting_energy);
    movement_speed = c.monster_movement_speed;
    exploration_movement_speed = c.monster_exploration_movement_speed;
    sight_range = c.monster_sight_range;
    exploration_range = c.monster_exploration_range;
    fight_action_sampler.clear();
    fight_action_sampler.add(FIGHT_HIT, c.monster_fight_hit_weight);
    fight_action_sampler.add(FIGHT_MISS, c.monster_fight_miss_weight);
    fight_action_sampler.add(FIGHT_FLEE, c.monster_fight_flee_weight);
    if (fight_action_sampler.total_weight() <= 0)
        world().log_zero_total_weight("fight actions (hit, miss, flee)");
    first_attack_damage = c.monster_first_attack_damage;
    normal_attack_damage = c.monster_normal_attack_damage;
    attacker_energy_gain = c.monster_attacker_energy_gain;
}

void obj_monster::on_tick(Ticks tick, Rng& rng) {
    obj_creature::on_tick(tick, rng);
    const TerrainCell* under = world().current_terrain().cell_at_room(x, y);
    const double speed_factor =
        under && under->is_sand ? world().configs().monster_sand_move_speed_multiplier : 1.0;
    if (hunt(speed_factor, rng) || guard_food(speed_factor))
        return;
    wander(speed_factor);
}

// Keeps after its prey while it is in sight; without prey it takes the nearest human in sight
// and goes after it in the same tick.
bool obj_monster::hunt(double speed_factor, Rng& rng) {
    Runtime& runtime = this->runtime();
    obj_human* prey = runtime.find_as<obj_human>(target_creature);
    if (prey && point_distance_compare(x, y, prey->x, prey->y, sight_range) > 0)
        prey = nullptr;
    if (!prey) {
        target_creature = NO_INSTANCE;
        prey = runtime.instance_nearest<obj_human>(x, y);
        if (!prey || point_distance_compare(x, y, prey->x, prey->y, sight_range) > 0)
            return false;
        target_creature = prey->id();
    }
    creature_approach(*this,
                      creature_find_pathfinding_adjacent_target_cell(
                          *this, terrain_room_to_cell(prey->x), terrain_room_to_cell(prey->y)),
                      movement_speed * speed_factor);
    // A flight only means no blow this time: the monster keeps hunting.
    if (can_attack_creature(*prey) && creature_is_within_attack_range(*this, *prey))
        attack_creature(*prey, rng);
    return true;
}

bool obj_monster::guard_food(double speed_factor) {
    const obj_food* food = runtime().instance_nearest<obj_food>(x, y);
    if (!food) {
        target_food = NO_INSTANCE;
        return false;
    }
    // Other food to guard: the monster goes there now rather than at the end of its timer.
    if (food->id() != target_food) {
        target_food = food->id();
        target_food_cell_timer = 0;
    }
    if (cell_pick_due(world(), target_food_cell_timer))
        target_cell_around_food = find_pathfinding_target_around_food(*food);
    creature_approach(*this, target_cell_around_food, exploration_movement_speed * speed_factor);
    return true;
}

void obj_monster::wander(double speed_factor) {
    if (cell_pick_due(world(), exploration_timer))
        target_explore_cell = find_exploring_pathfinding_target();
    creature_approach(*this, target_explore_cell, exploration_movement_speed * speed_factor);
}

const TerrainCell* obj_monster::find_pathfinding_target_around_food(const obj_food& food) const {
    return pick_cell_around(world(), food.x, food.y, MONSTER_FOOD_SQUARE_HALF_SIZE, -1);
}

const TerrainCell* obj_monster::find_exploring_pathfinding_target() const {
    const Terrain& terrain = world().current_terrain();
    const int half_size = terrain_cells_clamped(std::floor(exploration_range / TERRAIN_CELL_SIZE),
                                                terrain.width + terrain.height);
    return pick_cell_around(world(), x, y, half_size, exploration_range);
}

}  // namespace veldra
