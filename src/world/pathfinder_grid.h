#pragma once
// Neighbours and distance estimate for searches on a rectangular grid whose cells are numbered
// cy * width + cx, the node type PfDenseNodeMap indexes directly. Included through
// world/pathfinder.h.

#include <array>
#include <bit>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "util/struct_pool.h"
#include "world/pathfinder_records.h"

namespace veldra {

enum class PfGridMoves {
    orthogonal,      // 4 neighbours, cost 1
    with_diagonals,  // 8 neighbours, diagonals cost sqrt(2)
};

struct PfGridStep {
    int dx;
    int dy;
};

// Neighbour data on a grid is the index of the step in this table: the four orthogonal steps,
// then the four diagonals. The order is also the order neighbours are listed in, which decides
// ties between equally good routes.
inline constexpr std::array<PfGridStep, 8> pf_grid_steps{{
    {1, 0},
    {0, 1},
    {-1, 0},
    {0, -1},
    {1, 1},
    {-1, 1},
    {-1, -1},
    {1, -1},
}};

inline double pf_grid_step_cost(int step) {
    return step >= 4 ? std::numbers::sqrt2 : 1.0;
}

// Straight-line distance between two cells in cell units; never overestimates either move set.
inline double pf_grid_euclidean(int width, int cell_a, int cell_b) {
    const double dx = cell_a % width - cell_b % width;
    const double dy = cell_a / width - cell_b / width;
    return std::sqrt(dx * dx + dy * dy);
}

// A get_neighbors callback for a Pathfinder<int, int, ...> on a grid whose passability does
// not change while it is searched (a trial's terrain). The allowed steps of every cell are
// worked out once, at construction, into one byte per cell, so an expansion only walks the set
// bits; make a new one when cells change. A diagonal step is only allowed when both orthogonal
// cells beside it are passable too, so paths never cut a blocked corner. Blocked cells have no
// steps out of them, and no step leads into one.
class PfGridNeighbors {
public:
    // passable: bool(int cell), asked once per cell and neighbour here and never again.
    template <class Passable>
    PfGridNeighbors(int width, int height, PfGridMoves moves, const Passable& passable)
        : width_(width), moves_(static_cast<std::size_t>(width) * height) {
        assert(width > 0 && height > 0 && "PfGridNeighbors on an empty grid?");
        auto open = [&](int cx, int cy) {
            return cx >= 0 && cy >= 0 && cx < width && cy < height && passable(cy * width + cx);
        };
        const int step_count = moves == PfGridMoves::orthogonal ? 4 : 8;
        for (int cy = 0; cy < height; ++cy) {
            for (int cx = 0; cx < width; ++cx) {
                if (!open(cx, cy))
                    continue;
                std::uint8_t allowed = 0;
                for (int d = 0; d < step_count; ++d) {
                    const auto [dx, dy] = pf_grid_steps[d];
                    const bool corner_clear = d < 4 || (open(cx + dx, cy) && open(cx, cy + dy));
                    if (open(cx + dx, cy + dy) && corner_clear)
                        allowed |= 1u << d;
                }
                moves_[cy * width + cx] = allowed;
            }
        }
    }

    int operator()(const int& cell, std::vector<PfNeighbor<int, int>*>& out,
                   StructPool<PfNeighbor<int, int>>& pool) const {
        int count = 0;
        for (unsigned allowed = moves_[cell]; allowed != 0; allowed &= allowed - 1) {
            const int d = std::countr_zero(allowed);
            const int to = cell + pf_grid_steps[d].dy * width_ + pf_grid_steps[d].dx;
            count = pf_add_neighbor(out, count, pool, to, pf_grid_step_cost(d), d);
        }
        return count;
    }

private:
    int width_;
    std::vector<std::uint8_t> moves_;  // per cell: bit d set when step d is allowed
};

}  // namespace veldra
