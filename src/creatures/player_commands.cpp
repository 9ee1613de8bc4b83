#include "creatures/player_commands.h"

#include <cmath>
#include <limits>
#include <memory>

#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_action.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "creatures/trial_world.h"
#include "runtime/runtime.h"
#include "util/geometry.h"
#include "world/terrain.h"

namespace veldra {

namespace {

int unit(int v) {
    return v < 0 ? -1 : v > 0 ? 1 : 0;
}

// Commands from a window carry whole pixels, so a recording written as text reads back as the
// same numbers and the replay clicks exactly where the player did.
double whole_pixel(double v) {
    return std::isfinite(v) ? std::round(v) : 0;
}

template <class T>
InstanceId nearest_within(const TrialWorld& world, const obj_human& player, double x, double y,
                          double& best) {
    InstanceId found = NO_INSTANCE;
    world.runtime.for_each<T>([&](T& entity) {
        if (entity.id() == player.id())
            return;
        const double d = point_distance(x, y, entity.x, entity.y);
        if (d <= PLAYER_PICK_RADIUS && d < best) {
            best = d;
            found = entity.id();
        }
    });
    return found;
}

void walk_to(obj_human_player& player, const TerrainCell& cell) {
    player.force_start_action(std::make_unique<HA_Explore>(player, cell));
}

void apply_target(obj_human_player& player, const PlayerCommand& command) {
    const PlayerTarget target = player_target_at(player.world(), player, command.x, command.y);
    switch (target.kind) {
        case PlayerTarget::Kind::none:
            return;
        case PlayerTarget::Kind::cell:
            walk_to(player, *player.world().current_terrain().cell_at(target.cx, target.cy));
            return;
        case PlayerTarget::Kind::monster: {
            // One click is enough for a monster out of reach: the attack waits in the memory
            // behind the approach and takes over when the approach ends within range. A monster
            // the human has not noticed yet is walked towards, cell by cell.
            player.force_start_action(std::make_unique<HA_AttackMonster>(player, target.id));
            const auto* monster = player.runtime().find_as<obj_monster>(target.id);
            if (creature_is_within_attack_range(player, *monster))
                return;
            if (point_distance_compare(player.x, player.y, monster->x, monster->y,
                                       player.sight_range) <= 0)
                player.force_start_action(std::make_unique<HA_ApproachMonster>(player, target.id));
            else
                walk_to(player, *player.world().current_terrain().cell_at(target.cx, target.cy));
            return;
        }
        case PlayerTarget::Kind::food:
            player.force_start_action(std::make_unique<HA_ApproachFood>(player, target.id));
            return;
        case PlayerTarget::Kind::human:
            player.force_start_action(std::make_unique<HA_ExchangeWithHuman>(player, target.id));
            return;
    }
}

// While a direction is held the human walks to the neighbouring cell that way, one cell at a
// time, so letting go stops it within a cell.
void walk_held_direction(obj_human_player& player, const PlayerCommands& commands) {
    if (commands.held_dx == 0 && commands.held_dy == 0)
        return;
    const Terrain& terrain = player.world().current_terrain();
    const TerrainCell* here = terrain.cell_at_room(player.x, player.y);
    if (!here)
        return;
    const TerrainCell* next =
        terrain.cell_at(here->cx + commands.held_dx, here->cy + commands.held_dy);
    if (!next || !next->is_traversable)
        return;
    walk_to(player, *next);
}

}  // namespace

void PlayerCommands::push_move(Ticks next_tick, int dx, int dy) {
    PlayerCommand command;
    command.kind = PlayerCommand::Kind::move;
    command.tick = next_tick;
    command.dx = unit(dx);
    command.dy = unit(dy);
    pending.push_back(command);
}

void PlayerCommands::push_target(Ticks next_tick, double x, double y) {
    PlayerCommand command;
    command.kind = PlayerCommand::Kind::target;
    command.tick = next_tick;
    command.x = whole_pixel(x);
    command.y = whole_pixel(y);
    pending.push_back(command);
}

void PlayerCommands::clear() {
    pending.clear();
    applied.clear();
    held_dx = held_dy = 0;
}

PlayerTarget player_target_at(const TrialWorld& world, const obj_human& player, double x,
                              double y) {
    PlayerTarget target;
    if (!world.terrain)
        return target;
    const TerrainCell* cell = world.terrain->cell_at_room(x, y);
    if (!cell)
        return target;
    target.cx = cell->cx;
    target.cy = cell->cy;
    // Creatures before food: a monster standing on food is what the player means to fight.
    double best = std::numeric_limits<double>::infinity();
    if (InstanceId id = nearest_within<obj_monster>(world, player, x, y, best); id != NO_INSTANCE) {
        target.kind = PlayerTarget::Kind::monster;
        target.id = id;
    }
    if (InstanceId id = nearest_within<obj_human>(world, player, x, y, best); id != NO_INSTANCE) {
        target.kind = PlayerTarget::Kind::human;
        target.id = id;
    }
    if (target.id != NO_INSTANCE)
        return target;
    if (InstanceId id = nearest_within<obj_food>(world, player, x, y, best); id != NO_INSTANCE) {
        target.kind = PlayerTarget::Kind::food;
        target.id = id;
        return target;
    }
    if (cell->is_traversable)
        target.kind = PlayerTarget::Kind::cell;
    return target;
}

void player_apply_commands(obj_human_player& player, PlayerCommands& commands, Ticks tick) {
    while (!commands.pending.empty() && commands.pending.front().tick <= tick) {
        PlayerCommand command = commands.pending.front();
        commands.pending.pop_front();
        command.tick = tick;
        if (command.kind == PlayerCommand::Kind::move) {
            commands.held_dx = unit(command.dx);
            commands.held_dy = unit(command.dy);
            if (commands.held_dx == 0 && commands.held_dy == 0)
                player.stop_actions_of_type(*player.world().action_types.HAT_explore);
        } else {
            apply_target(player, command);
        }
        commands.applied.push_back(command);
    }
    walk_held_direction(player, commands);
}

}  // namespace veldra
