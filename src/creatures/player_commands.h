#pragma once
// What the player asked their human to do, stamped with the tick it takes effect at. The window
// turns keys and clicks into commands; a replay reads them from a file. Either way the human
// applies them inside its own tick, so a trial with commands is as much a pure function of its
// inputs as one without, and the same commands give the same result at any frame rate or game
// speed, in a window or headless.

#include <cstdint>
#include <deque>
#include <vector>

#include "runtime/instance_id.h"
#include "util/ticks.h"

namespace veldra {

struct PlayerCommand {
    enum class Kind : std::uint8_t {
        move,    // the held direction changed to (dx, dy); (0, 0) lets go
        target,  // a click at the world point (x, y)
    };
    Kind kind = Kind::move;
    Ticks tick = 0;       // applied in the player's tick that has this count
    int dx = 0, dy = 0;   // move: each -1, 0 or 1
    double x = 0, y = 0;  // target: pixels, rounded to whole pixels when stamped

    bool operator==(const PlayerCommand&) const = default;
};

// Commands waiting for their tick, and those already applied, in the order they were applied:
// the trial's input record. A command stamped with a tick that has passed is applied at the
// next tick, and recorded with that tick.
struct PlayerCommands {
    // Queues a command for the next tick to run.
    void push_move(Ticks next_tick, int dx, int dy);
    void push_target(Ticks next_tick, double x, double y);
    // Queues a recorded command as it stands (a replay).
    void push(const PlayerCommand& command) { pending.push_back(command); }
    void clear();

    std::deque<PlayerCommand> pending;
    std::vector<PlayerCommand> applied;
    int held_dx = 0, held_dy = 0;  // the direction the player holds now
};

class obj_human;
class obj_human_player;
struct TrialWorld;

// What a click at (x, y) means for the player's human: the creature or food under the point
// (within PLAYER_PICK_RADIUS of its centre, the nearest when several are), else the cell. The
// player's own human is never a target. The window highlights the same thing the click will do.
struct PlayerTarget {
    enum class Kind : std::uint8_t { none, cell, monster, food, human };
    Kind kind = Kind::none;  // none: outside the level, or a cell nobody can walk on
    InstanceId id = NO_INSTANCE;
    int cx = 0, cy = 0;  // the cell under the point
};
inline constexpr double PLAYER_PICK_RADIUS = 36;  // pixels
PlayerTarget player_target_at(const TrialWorld& world, const obj_human& player, double x, double y);

// Turns the commands due at `tick` into actions of `player`: held keys walk it cell by cell,
// clicks attack, eat, exchange or walk through force_start_action.
void player_apply_commands(obj_human_player& player, PlayerCommands& commands, Ticks tick);

}  // namespace veldra
