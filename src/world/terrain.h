#pragma once
// What a trial plays on: the grid of cells made when a level is dumped, each knowing whether it
// can be walked, whether it is sand or rock, and its square in room pixels. Creatures look cells
// up every tick, so the grid is one flat row-major vector and lookups never allocate.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "util/rect.h"

namespace veldra {

// Room pixels per cell side.
inline constexpr int TERRAIN_CELL_SIZE = 64;

// Past any level on either axis (levels have at most 1000 cells a side), and small enough that
// a cell coordinate plus a range in cells never overflows an int.
inline constexpr int TERRAIN_FAR_CELL = 1 << 24;

// The cell a room position falls in on one axis. Positions come from movement at formula-given
// speeds, so one may be NaN or astronomically far: it lands outside every terrain (at -1 or
// TERRAIN_FAR_CELL) instead of in an integer overflow.
inline int terrain_room_to_cell(double pixels) {
    const double cell = std::floor(pixels / TERRAIN_CELL_SIZE);
    if (!(cell >= -1.0))
        return -1;
    return cell >= TERRAIN_FAR_CELL ? TERRAIN_FAR_CELL : static_cast<int>(cell);
}

// A number of cells (a range from a formula, already rounded) as an int from 0 to `most`: NaN
// and negative ranges reach no cell, an infinite one every cell up to `most`.
inline int terrain_cells_clamped(double cells, int most) {
    if (!(cells > 0.0))
        return 0;
    return cells >= most ? most : static_cast<int>(cells);
}

struct TerrainCell {
    TerrainCell() = default;
    TerrainCell(int cx, int cy, bool is_traversable);

    int cx = 0;
    int cy = 0;
    bool is_traversable = true;
    bool is_sand = false;
    bool is_rock = false;
    // The full 64 x 64 square: (cx * 64, cy * 64) to (cx * 64 + 64, cy * 64 + 64). Neighbouring
    // rectangles share their edges; the centre falls on the half-pixel (cx * 64 + 32).
    Rect room_rect;
};

// Tells one terrain from another where an address cannot: a trial refills the same Terrain
// member for every trial, so a cache built from a terrain (a creature's search grid) keys itself
// by this number. Every terrain made, copied or assigned to gets a number no terrain had before
// in this process; one moved from gets a new one too, since its cells went with the move.
class TerrainSerial {
public:
    TerrainSerial() : value_(next()) {}
    TerrainSerial(const TerrainSerial&) : value_(next()) {}
    TerrainSerial(TerrainSerial&& other) noexcept : value_(other.value_) { other.value_ = next(); }
    TerrainSerial& operator=(const TerrainSerial& other) {
        if (this != &other)
            value_ = next();
        return *this;
    }
    TerrainSerial& operator=(TerrainSerial&& other) noexcept {
        if (this != &other) {
            value_ = other.value_;
            other.value_ = next();
        }
        return *this;
    }

    std::uint64_t value() const { return value_; }

private:
    static std::uint64_t next();
    std::uint64_t value_;
};

class Terrain {
public:
    Terrain() = default;
    // `cells` holds height rows of width cells, row after row.
    Terrain(int width, int height, std::vector<TerrainCell> cells);

    // nullptr outside the grid. Both lookups are defined here, not in terrain.cpp: creatures
    // make dozens of them a tick, and a call apiece cost more than the lookup itself.
    const TerrainCell* cell_at(int cx, int cy) const {
        if (cx < 0 || cy < 0 || cx >= width || cy >= height)
            return nullptr;
        return &cells[std::size_t(cy) * width + cx];
    }
    // By room position: real division by 64, then the whole parts. Any negative position is
    // outside, even one that would truncate to 0.
    const TerrainCell* cell_at_room(double x, double y) const {
        const double qx = x / TERRAIN_CELL_SIZE;
        const double qy = y / TERRAIN_CELL_SIZE;
        // Written so that NaN fails the test as well.
        if (!(qx >= 0.0 && qy >= 0.0 && qx < width && qy < height))
            return nullptr;
        return cell_at(static_cast<int>(qx), static_cast<int>(qy));
    }

    int width = 0;
    int height = 0;
    std::vector<TerrainCell> cells;  // row-major: cells[cy * width + cx]
    // Changes whenever this object is given other cells (assigned, moved from); cells are
    // not edited in place once a terrain is made.
    TerrainSerial serial;
};

// Straight-line distance between the two cells, in cells.
double euclidean_distance_between_terrain_cells(const TerrainCell& cell_a,
                                                const TerrainCell& cell_b);

// How many untraversable cells block the straight passage of a whole cell from `cell_a` to
// `cell_b`; 0 means the way is clear. Both cells must belong to `terrain`. Only the bounding box
// of the two cells is examined, so the cost grows with its area.
int terrain_cells_colliding_between_cells(const Terrain& terrain, const TerrainCell& cell_a,
                                          const TerrainCell& cell_b);

}  // namespace veldra
