#pragma once
// Where a room position falls on the grid. Event texts are built only when a line will be
// written (the world's log_event is set): automatic trials run thousands of ticks in one call
// and must not format strings nobody reads.

#include <cmath>

#include "creatures/trial_world.h"
#include "world/terrain.h"

namespace veldra::detail {

// The cell coordinate of a room position on one axis.
inline int room_to_cell(double pixels) {
    return terrain_room_to_cell(pixels);
}

}  // namespace veldra::detail
