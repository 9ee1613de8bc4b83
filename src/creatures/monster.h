#pragma once
// The danger of a level. A monster has no personality: it hunts the nearest human in sight,
// and with none in sight it lingers around the nearest food (where humans must come to eat) or
// wanders. Its timers and cell picks draw from the trial's generator, its fight outcomes from
// the tick's.

#include "creatures/creature.h"

namespace veldra {

struct TerrainCell;
class obj_food;

class obj_monster : public obj_creature {
    VELDRA_OBJECT(obj_monster, obj_creature)
public:
    using obj_creature::obj_creature;

    void on_create() override;
    void on_tick(Ticks tick, Rng& rng) override;

    // A random traversable cell of the square around the food; nullptr when the square has
    // none. Draws from the trial's generator only when there is a choice to make.
    const TerrainCell* find_pathfinding_target_around_food(const obj_food& food) const;
    // A random traversable cell within exploration_range of the monster; nullptr when none.
    const TerrainCell* find_exploring_pathfinding_target() const;

    InstanceId target_creature = NO_INSTANCE;  // the human being hunted
    InstanceId target_food = NO_INSTANCE;      // the food being guarded
    const TerrainCell* target_cell_around_food = nullptr;
    Ticks target_food_cell_timer = 0;  // until a new cell near the food is picked
    Ticks exploration_timer = 0;       // until a new wander cell is picked
    const TerrainCell* target_explore_cell = nullptr;
    double movement_speed = 0;              // pixels per tick while hunting
    double exploration_movement_speed = 0;  // pixels per tick while guarding or wandering
    double sight_range = 0;                 // pixels
    double exploration_range = 0;           // pixels

private:
    // Each returns false when it had nothing to do, so the next behaviour gets the tick.
    bool hunt(double speed_factor, Rng& rng);
    bool guard_food(double speed_factor);
    void wander(double speed_factor);
};

// Half the side of the square of cells around food where a monster lingers, in cells: the
// food's cell and two cells each way.
inline constexpr int MONSTER_FOOD_SQUARE_HALF_SIZE = 2;

}  // namespace veldra
