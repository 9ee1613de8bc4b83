#pragma once
// What the humans' code reads of the running trial: its terrain, its generator and its event
// log. Event texts are built only when a line will be written: automatic trials run thousands
// of ticks in one call and must not format strings nobody reads.

#include <cmath>
#include <string>

#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "world/terrain.h"

namespace veldra::detail {

inline const Terrain& trial_terrain() {
    const Terrain* terrain = trial_world().terrain;
    VELDRA_ASSERT(terrain, "humans ticked before the trial set trial_world().terrain?");
    return *terrain;
}

// The cell coordinate of a room position on one axis.
inline int room_to_cell(double pixels) {
    return static_cast<int>(std::floor(pixels / TERRAIN_CELL_SIZE));
}

// The trial's own generator, for the draws that are not the tick's: counter-attack and
// exchange-back chances.
inline Rng& trial_rng() {
    Rng* rng = trial_world().rng;
    VELDRA_ASSERT(rng, "humans ticked before the trial set trial_world().rng?");
    return *rng;
}

// Lines the trial always takes (it filters automatic runs itself).
inline bool human_event_log_wanted() {
    return static_cast<bool>(trial_world().log_event);
}

inline void human_log_event(const std::string& text) {
    trial_world().log_event(text);
}

}  // namespace veldra::detail
