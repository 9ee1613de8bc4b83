#include "world/terrain.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "runtime/assertion.h"
#include "util/geometry.h"

namespace veldra {

namespace {

struct Segment {
    double x1;
    double y1;
    double x2;
    double y2;
};

}  // namespace

std::uint64_t TerrainSerial::next() {
    // Atomic so that terrains made on different threads (a test runner's, say) never share one.
    static std::atomic<std::uint64_t> counter{0};
    return counter.fetch_add(1, std::memory_order_relaxed) + 1;
}

TerrainCell::TerrainCell(int cx, int cy, bool is_traversable)
    : cx(cx),
      cy(cy),
      is_traversable(is_traversable),
      room_rect{double(cx) * TERRAIN_CELL_SIZE, double(cy) * TERRAIN_CELL_SIZE,
                double(cx + 1) * TERRAIN_CELL_SIZE, double(cy + 1) * TERRAIN_CELL_SIZE} {}

Terrain::Terrain(int width, int height, std::vector<TerrainCell> cells)
    : width(width), height(height), cells(std::move(cells)) {
    VELDRA_ASSERT(width >= 0 && height >= 0 && this->cells.size() == std::size_t(width) * height,
                  "Terrain given a cell vector that is not height rows of width cells");
}

double euclidean_distance_between_terrain_cells(const TerrainCell& cell_a,
                                                const TerrainCell& cell_b) {
    return point_distance(cell_a.cx, cell_a.cy, cell_b.cx, cell_b.cy);
}

int terrain_cells_colliding_between_cells(const Terrain& terrain, const TerrainCell& cell_a,
                                          const TerrainCell& cell_b) {
    // The same corner of both squares joined, for all four corners: the whole square sweeps
    // along, not only its centre. Offsets are 63 so a corner stays inside its own cell.
    constexpr double far = TERRAIN_CELL_SIZE - 1;
    const double ax = double(cell_a.cx) * TERRAIN_CELL_SIZE;
    const double ay = double(cell_a.cy) * TERRAIN_CELL_SIZE;
    const double bx = double(cell_b.cx) * TERRAIN_CELL_SIZE;
    const double by = double(cell_b.cy) * TERRAIN_CELL_SIZE;
    const Segment segments[4] = {{ax, ay, bx, by},
                                 {ax + far, ay, bx + far, by},
                                 {ax, ay + far, bx, by + far},
                                 {ax + far, ay + far, bx + far, by + far}};
    const int cx1 = std::max(0, std::min(cell_a.cx, cell_b.cx));
    const int cx2 = std::min(terrain.width - 1, std::max(cell_a.cx, cell_b.cx));
    const int cy1 = std::max(0, std::min(cell_a.cy, cell_b.cy));
    const int cy2 = std::min(terrain.height - 1, std::max(cell_a.cy, cell_b.cy));
    int count = 0;
    for (int cy = cy1; cy <= cy2; ++cy) {
        for (int cx = cx1; cx <= cx2; ++cx) {
            const TerrainCell& cell = terrain.cells[std::size_t(cy) * terrain.width + cx];
            if (cell.is_traversable)
                continue;
            // The blocking square spans the same 0 to 63 offsets as the swept one. With its far
            // side at +64 a line passing one way would touch a cell that the mirrored line
            // passes clear of, and a path could be shortened from one cell to another but not
            // back.
            const Rect& r = cell.room_rect;
            for (const Segment& s : segments) {
                if (line_on_rectangle(s.x1, s.y1, s.x2, s.y2, r.x1, r.y1, r.x1 + far, r.y1 + far)) {
                    ++count;
                    break;
                }
            }
        }
    }
    return count;
}

}  // namespace veldra
